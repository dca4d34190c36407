#include "apps/opnimp/convert/letter_doubt.h"

#include <algorithm>
#include <cstddef>
#include <set>

#include "apps/opnimp/convert/encoding_rank.h"
#include "base/text.h"

namespace velk {

namespace {

using Bytes = std::string_view;

constexpr Bytes westernPage = "windows-1252";
/// How much likelier it has to be than another encoding: by half a power of ten.
constexpr unsigned sure = 2;

constexpr Bytes undefinedBytes = "\x81\x8D\x8F\x90\x9D";
/// Letters of windows-1252 among its signs: f with hook, S, OE, Z, Y, in both cases where it has
/// them.
constexpr Bytes highCapitals = "\x8A\x8C\x8E\x9F";
constexpr Bytes highSmall = "\x83\x9A\x9C\x9E";
/// Signs that stand between letters: quotes, dashes, points, blanks, marks of trade, ordinals.
constexpr Bytes joiningSigns =
    "\x80\x85\x91\x92\x95\x96\x97\x99\xA0\xA9\xAA\xAD\xAE\xB4\xB7\xBA\xD7\xF7";
/// More signs that may follow each other, or a letter.
constexpr Bytes quoteSigns = "\x82\x84\x8B\x93\x94\x9B\xAB\xBB";
/// Opening quotes and an accent, which no word ends in; DOS has its small e, a and e there.
constexpr Bytes neverLast = "\x82\x84\x88";

bool isOf(Bytes set, char c) {
  return set.find(c) != Bytes::npos;
}

bool isHigh(char c) {
  return static_cast<unsigned char>(c) >= 0x80;
}

bool isAccented(char c) {
  return static_cast<unsigned char>(c) >= 0xC0 && c != '\xD7' && c != '\xF7';
}

bool isAsciiLetter(char c) {
  return lowerAscii(c) >= 'a' && lowerAscii(c) <= 'z';
}

bool isLetter(char c) {
  return isAsciiLetter(c) || isAccented(c) || isOf(highCapitals, c) || isOf(highSmall, c);
}

bool isSmall(char c) {
  return (c >= 'a' && c <= 'z') || (isAccented(c) && static_cast<unsigned char>(c) >= 0xDF) ||
         isOf(highSmall, c);
}

/// A byte that is no letter where only one can be, by its neighbours.
bool isMisplaced(char before, char c, char after) {
  if (isOf(undefinedBytes, c)) return true;
  // Of AE DOS has a with tilde.
  if (isOf(highCapitals, c) || c == '\xC6') {
    return isSmall(before) && (isSmall(after) || !isLetter(after));
  }
  if (isLetter(c) || !isLetter(before)) return false;
  if (isOf("\xAA\xBA", c)) return isSmall(before) && isSmall(after);
  if (isOf(joiningSigns, c)) return false;
  return isLetter(after) || isOf(neverLast, c);
}

bool isStraySign(char c) {
  return !isLetter(c) && !isOf(joiningSigns, c) && !isOf(quoteSigns, c);
}

/// Reads the words with letters beyond ASCII.
class WordReader {
 public:
  explicit WordReader(Bytes text) : text_(text) {}

  std::optional<LetterDoubt> doubt() {
    for (std::size_t at = 0; (at += asciiRun(text_.substr(at))) < text_.size();) {
      at = readRun(at);
    }
    const std::vector<RankedEncoding> ranked = rankEncodings(words_);
    if (found_) return misplaced(ranked);
    const auto own = std::ranges::find(ranked, westernPage, &RankedEncoding::name);
    if (own == ranked.end()) return std::nullopt;
    std::vector<const RankedEncoding*> rivals;
    for (const RankedEncoding& other : ranked) {
      if (other.name != westernPage && other.cost <= own->cost + sure) rivals.push_back(&other);
    }
    if (rivals.empty()) return std::nullopt;
    const std::size_t word = firstDifference(*rivals.front(), *own);
    return doubtOf(*own, rivals, word, offsets_[word]);
  }

 private:
  static constexpr std::size_t otherScript =
      4;  // accented letters in a row, that no Western word has

  char at(std::size_t i) const { return i < text_.size() ? text_[i] : '\n'; }

  /// Answers where the run of bytes beyond ASCII ends.
  std::size_t readRun(std::size_t begin) {
    std::size_t accented = 0;
    std::size_t end = begin;
    for (; end < text_.size() && isHigh(text_[end]); ++end) {
      accented = isAccented(text_[end]) ? accented + 1 : 0;
      const char before = end == 0 ? '\n' : text_[end - 1];
      const bool isOdd = accented == otherScript || isMisplaced(before, text_[end], at(end + 1));
      if (isOdd && !found_) found_ = end;
    }
    const Bytes run = text_.substr(begin, end - begin);
    if (run.size() >= otherScript && !found_ && std::ranges::any_of(run, isStraySign)) {
      found_ = begin;
    }
    addWord(begin, end);
    return end;
  }

  /// Enough of them to judge by.
  void addWord(std::size_t begin, std::size_t end) {
    constexpr std::size_t enough = 1000;
    if (words_.size() > enough || begin < wordEnd_) return;
    const Bytes found = word(begin, end, wordEnd_);
    if (!known_.insert(found).second) return;
    words_.push_back(found);
    offsets_.push_back(begin);
  }

  /// What stands around the bytes between blanks and separators.
  Bytes word(std::size_t begin, std::size_t end, std::size_t& wordEnd) const {
    constexpr std::size_t longest = 40;  // each way
    const auto isPart = [&](std::size_t i) { return isHigh(at(i)) || isAsciiLetter(at(i)); };
    const std::size_t first = begin;
    while (begin > 0 && first - begin < longest && isPart(begin - 1)) --begin;
    wordEnd = end;
    while (wordEnd < end + longest && isPart(wordEnd)) ++wordEnd;
    return text_.substr(begin, wordEnd - begin);
  }

  static std::size_t firstDifference(const RankedEncoding& one, const RankedEncoding& other) {
    const auto differ = std::ranges::mismatch(one.words, other.words);
    return static_cast<std::size_t>(differ.in1 - one.words.begin());
  }

  /// By the word that cannot be Western, if the others do not say in which encoding it is.
  std::optional<LetterDoubt> misplaced(const std::vector<RankedEncoding>& all) const {
    std::size_t end = 0;
    const Bytes odd = word(*found_, *found_ + 1, end);
    const auto at = std::ranges::find(words_, odd);
    const bool isTold = at != words_.end() && all.front().name != westernPage;
    const std::vector<RankedEncoding> alone =
        isTold ? std::vector<RankedEncoding>() : rankEncodings({odd});
    const std::vector<RankedEncoding>& ranked = isTold ? all : alone;
    const auto own = std::ranges::find(ranked, westernPage, &RankedEncoding::name);
    std::vector<const RankedEncoding*> rivals;
    for (const RankedEncoding& other : ranked) {
      if (other.name != westernPage) rivals.push_back(&other);
    }
    return doubtOf(*own, rivals,
                   isTold ? static_cast<std::size_t>(at - words_.begin()) : std::size_t{0},
                   *found_);
  }

  static LetterDoubt doubtOf(const RankedEncoding& western,
                             std::vector<const RankedEncoding*> rivals, std::size_t word,
                             std::size_t offset) {
    constexpr std::size_t most = 3;
    if (rivals.size() > most) rivals.resize(most);
    rivals.push_back(&western);
    LetterDoubt doubt{offset, {}};
    for (const RankedEncoding* const encoding : rivals) {
      doubt.readings.push_back({encoding->name, encoding->words[word]});
    }
    return doubt;
  }

  Bytes text_;
  std::optional<std::size_t> found_;  // the first byte that is no letter where one has to be
  std::set<Bytes> known_;
  std::vector<Bytes> words_;          // the same, as they follow each other
  std::vector<std::size_t> offsets_;  // of each
  std::size_t wordEnd_ = 0;
};

}  // namespace

std::optional<LetterDoubt> doubtWestern(std::string_view bytes) {
  return WordReader(bytes).doubt();
}

}  // namespace velk
