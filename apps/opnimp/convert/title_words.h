// Titles of columns as people write them: reduced to their words, and compared.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace velk {

/// The words of a title in small letters without accents: "Kunden-Nr." is "kunden", "nr". Anything
/// but letters of western Europe and digits ends a word.
std::vector<std::string> wordsOf(std::string_view title);

/// The words without what separates them.
std::string lettersOfWords(const std::vector<std::string>& words);

/// True when there are as many words, and each is the other's or shortens it: it begins with the
/// same letter, and all of its letters follow each other there, as in "amt" of "amount".
bool abbreviates(const std::vector<std::string>& words, const std::vector<std::string>& of);

/// How many letters have to be put in, taken out or replaced, or pairs of neighbours swapped, to
/// make one text of the other; no more than `most` + 1.
std::size_t editDistance(std::string_view a, std::string_view b, std::size_t most);

}  // namespace velk
