#include "apps/opnimp/convert/title_words.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <utility>

#include "base/text.h"

namespace velk {

namespace {

// Of U+00C0 to U+00FF, a blank for what is no letter.
constexpr std::u16string_view latinLetters =
    u"aaaaaaaceeeeiiiidnooooo ouuuuytsaaaaaaaceeeeiiiidnooooo ouuuuyty";

/// A blank for what is neither letter nor digit.
char plainLetter(char16_t c) {
  constexpr char16_t firstLatin = 0xC0;
  if (c >= firstLatin && c < firstLatin + latinLetters.size()) {
    return static_cast<char>(latinLetters[c - firstLatin]);
  }
  if (c >= 'A' && c <= 'Z') return static_cast<char>(c - 'A' + 'a');
  const bool isPlain = (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
  return isPlain ? static_cast<char>(c) : ' ';
}

bool shortens(std::string_view word, std::string_view whole) {
  constexpr std::size_t shortest = 2;
  if (word.size() < shortest || word.size() >= whole.size()) return false;
  if (word.front() != whole.front()) return false;
  std::size_t at = 0;
  for (const char letter : word) {
    at = whole.find(letter, at);
    if (at == std::string_view::npos) return false;
    ++at;
  }
  return true;
}

}  // namespace

std::vector<std::string> wordsOf(std::string_view title) {
  std::vector<std::string> words;
  bool within = false;
  for (const char16_t c : toUtf16(title)) {
    const char letter = plainLetter(c);
    if (letter != ' ') {
      if (!within) words.emplace_back();
      words.back() += letter;
    }
    within = letter != ' ';
  }
  return words;
}

std::string lettersOfWords(const std::vector<std::string>& words) {
  return std::accumulate(words.begin(), words.end(), std::string());
}

bool abbreviates(const std::vector<std::string>& words, const std::vector<std::string>& of) {
  return std::ranges::equal(words, of, [](const std::string& word, const std::string& whole) {
    return word == whole || shortens(word, whole);
  });
}

// The distances between all beginnings of both texts, a row at a time.
std::size_t editDistance(std::string_view a, std::string_view b, std::size_t most) {
  if (std::max(a.size(), b.size()) - std::min(a.size(), b.size()) > most) return most + 1;
  std::vector<std::size_t> beforeLast;
  std::vector<std::size_t> last(b.size() + 1);
  std::iota(last.begin(), last.end(), std::size_t{0});
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::vector<std::size_t> row{i};
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t replaced = last[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
      row.push_back(std::min({replaced, last[j] + 1, row[j - 1] + 1}));
      const bool swapped = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
      if (swapped) row[j] = std::min(row[j], beforeLast[j - 2] + 1);
    }
    beforeLast = std::exchange(last, std::move(row));
  }
  return std::min(last.back(), most + 1);
}

}  // namespace velk
