#include "apps/opnimp/convert/letter_doubt.h"

#include <algorithm>
#include <functional>
#include <set>
#include <utility>

#include "apps/opnimp/cli/printable.h"
#include "base/text.h"
#include "platform/native/named_encodings.h"

namespace velk {

namespace {

using Bytes = std::string_view;

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
    const std::string preferred = preferredEncoding(words_);
    constexpr std::size_t enough = 8;  // by fewer the library is easily misled
    if (!found_ && (preferred.empty() || known_.size() < enough)) return std::nullopt;
    const std::size_t offset = found_.value_or(asciiRun(text_));
    return LetterDoubt{offset, reason(offset), likely(preferred, text_[offset])};
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
    longest_ = std::max(longest_, run.size());
    addWord(begin, end);
    return end;
  }

  /// Enough of them for the library to judge by.
  void addWord(std::size_t begin, std::size_t end) {
    constexpr std::size_t enough = std::size_t{1} << 16U;
    if (words_.size() > enough || begin < wordEnd_) return;
    const auto added = known_.emplace(word(begin, end, wordEnd_));
    if (added.second) words_.append(*added.first).append(" ");
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

  std::string reason(std::size_t offset) const {
    std::size_t end = 0;
    const std::string shown = CodePage::windows1252().decode(word(offset, offset + 1, end));
    return "\"" + printable(shown) + "\" would stand";
  }

  std::vector<std::string> likely(const std::string& preferred, char sign) const {
    std::vector<std::string> names;
    if (!preferred.empty()) names.push_back(preferred);
    const auto add = [&](std::initializer_list<const char*> others) {
      for (const char* const name : others) {
        if (name != preferred) names.emplace_back(name);
      }
    };
    // DOS has its letters where windows-1252 has its first signs.
    const bool isDos = static_cast<unsigned char>(sign) < 0xA6;
    if (!found_) return names;
    if (longest_ >= otherScript) {
      isDos ? add({"IBM866", "windows-1251"}) : add({"windows-1251"});
    } else {
      isDos ? add({"IBM850", "IBM852"}) : add({"windows-1250", "IBM850"});
    }
    return names;
  }

  Bytes text_;
  std::optional<std::size_t> found_;  // the first byte that is no letter where one has to be
  std::size_t longest_ = 0;           // bytes beyond ASCII in a row
  std::set<std::string, std::less<>> known_;
  std::string words_;  // the same, as they follow each other
  std::size_t wordEnd_ = 0;
};

}  // namespace

std::optional<LetterDoubt> doubtWestern(std::string_view bytes) {
  return WordReader(bytes).doubt();
}

}  // namespace velk
