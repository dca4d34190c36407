#include "apps/opnimp/convert/word_cost.h"

#include <algorithm>
#include <cctype>
#include <optional>
#include <string>
#include <utility>

#include "apps/opnimp/convert/letter_pairs.h"

namespace velk {

namespace {

constexpr char16_t edge = u'\0';
constexpr char16_t stranger = u'\1';  // what has no place in a word
constexpr std::uint8_t unknown = 0xFF;
constexpr unsigned unknownCost = 20;  // of a pair with a letter that the language does not have
constexpr unsigned capitalCost = 8;   // of a capital within a word
constexpr char16_t afterLetters = 0x500;

struct Block {
  char16_t first, last;
  int toSmall;  // 0: capitals and small letters take turns
};
/// Capitals of Latin, Greek and Cyrillic letters.
constexpr Block capitals[] = {{u'A', u'Z', 0x20},   {0xC0, 0xD6, 0x20},    {0xD8, 0xDE, 0x20},
                              {0x100, 0x12F, 0},    {0x130, 0x130, -0xC7}, {0x132, 0x137, 0},
                              {0x139, 0x148, 0},    {0x14A, 0x177, 0},     {0x178, 0x178, -0x79},
                              {0x179, 0x17E, 0},    {0x386, 0x386, 0x26},  {0x388, 0x38A, 0x25},
                              {0x38C, 0x38C, 0x40}, {0x38E, 0x38F, 0x3F},  {0x391, 0x3AB, 0x20},
                              {0x400, 0x40F, 0x50}, {0x410, 0x42F, 0x20}};

char16_t smallLetter(char16_t c) {
  const auto* const block =
      std::ranges::find_if(capitals, [&](const Block& b) { return c >= b.first && c <= b.last; });
  if (block == std::end(capitals)) return c;
  if (block->toSmall != 0) return static_cast<char16_t>(c + block->toSmall);
  return static_cast<char16_t>(c + ((c - block->first) % 2 == 0 ? 1 : 0));
}

bool isLetter(char16_t c) {
  if (c < 0x80) return std::isalpha(c) != 0;
  return (c >= 0xC0 && c < 0x250 && c != 0xD7 && c != 0xF7) || (c >= 0x386 && c < 0x492);
}

enum class Stands : std::uint8_t { Anywhere, AtEdge, AtEnd, NearStart, Alone };
struct Signs {
  std::u16string_view signs;
  Stands where;
  unsigned cost;
};
/// Signs that stand between words, or around them.
constexpr Signs usualSigns[] = {
    {u"\u2019", Stands::Anywhere, 2},
    {u"\u2013\u2014\u2026", Stands::Anywhere, 3},
    {u"\u2018\u20AC", Stands::Anywhere, 4},
    {u"\u00B4", Stands::Anywhere, 8},
    {u"\u00B7\u00AD", Stands::Anywhere, 10},
    {u"\u00A0", Stands::AtEdge, 6},
    {u"\u00A0", Stands::Anywhere, 14},
    {u"\u00AE\u2122", Stands::AtEnd, 4},
    {u"\u00B0", Stands::AtEnd, 6},
    {u"\u201C\u201D\u201E\u201A\u2039\u203A\u00AB\u00BB", Stands::AtEdge, 6},
    {u"\u00A9\u00A1\u00BF", Stands::AtEdge, 10},
    {u"\u00AA\u00BA\u00B2\u00B3", Stands::NearStart, 4},  // ordinals, square metres
    {u"\u00A2\u00A3\u00A4\u00A5\u00A7\u00B1\u00B5\u00B6\u00B9\u00BC\u00BD\u00BE\u00D7\u00F7\u2020"
     u"\u2022\u2030",
     Stands::Alone, 3}};

/// What the sign costs that stands there; empty if it cannot.
std::optional<unsigned> signCost(std::u16string_view word, std::size_t at) {
  const bool isBefore = at + 1 < word.size() && isLetter(word[at + 1]);
  const bool isBehind = at > 0 && isLetter(word[at - 1]);
  const auto fits = [&](const Signs& usual) {
    if (usual.signs.find(word[at]) == std::u16string_view::npos) return false;
    return usual.where == Stands::Anywhere ||
           (usual.where == Stands::AtEdge && !(isBefore && isBehind)) ||
           (usual.where == Stands::AtEnd && !isBefore) ||
           (usual.where == Stands::NearStart && at <= 1) ||
           (usual.where == Stands::Alone && !isBefore && !isBehind);
  };
  const auto* const use = std::ranges::find_if(usualSigns, fits);
  return use == std::end(usualSigns) ? std::nullopt : std::optional(use->cost);
}

bool isSmallLetter(char16_t c) {
  return isLetter(c) && smallLetter(c) == c;
}

/// A capital behind a small letter, one of them beyond ASCII: no camel writes so.
bool isOddCapital(std::u16string_view word, std::size_t at) {
  if (at == 0 || isSmallLetter(word[at]) || !isSmallLetter(word[at - 1])) return false;
  return word[at] >= 0x80 || word[at - 1] >= 0x80;
}

/// The letters, with an edge for signs between them; adds what the rest of it costs.
std::u16string lettersOf(std::u16string_view word, unsigned& cost) {
  std::u16string letters(1, edge);
  for (std::size_t at = 0; at < word.size(); ++at) {
    const char16_t c = word[at];
    if (isLetter(c)) {
      cost += isOddCapital(word, at) ? capitalCost : 0;
      letters += smallLetter(c);
      continue;
    }
    const std::optional<unsigned> ofSign = signCost(word, at);
    cost += ofSign.value_or(0);
    letters += ofSign ? edge : stranger;
  }
  return letters + edge;
}

}  // namespace

WordCost::WordCost() {
  for (const LetterPairs& each : letterPairs()) {
    Language language{std::vector<std::uint8_t>(afterLetters, unknown), each.letters.size() + 1,
                      each.costs, each.rarity};
    language.places[edge] = 0;
    for (std::size_t i = 0; i < each.letters.size(); ++i) {
      language.places.at(each.letters[i]) = static_cast<std::uint8_t>(i + 1);
    }
    languages_.push_back(std::move(language));
  }
}

unsigned WordCost::pairCost(const Language& language, char16_t before, char16_t letter) {
  if (before == edge && letter == edge) return 0;
  const auto place = [&](char16_t c) { return c < afterLetters ? language.places[c] : unknown; };
  const std::uint8_t row = place(before);
  const std::uint8_t column = place(letter);
  if (row == unknown || column == unknown) return unknownCost;
  return static_cast<unsigned>(language.costs[row * language.width + column] - 'A');
}

std::vector<unsigned> WordCost::of(std::u16string_view word) const {
  unsigned signs = 0;
  const std::u16string letters = lettersOf(word, signs);
  std::vector<unsigned> costs;
  costs.reserve(languages_.size());
  for (const Language& language : languages_) {
    unsigned cost = signs + language.rarity;
    for (std::size_t i = 1; i < letters.size(); ++i) {
      cost += pairCost(language, letters[i - 1], letters[i]);
    }
    costs.push_back(cost);
  }
  return costs;
}

}  // namespace velk
