// Comma-separated text: how a line becomes fields and a field loses its quotes.
//
// One rule serves the record reader, the whole-file functions and the preview: a double quote
// toggles the quoted state and stays in the field; a comma outside quotes separates; so does a NUL
// that the line contains already, quoted or not. Blanks are never trimmed. The rule works in
// place, since no result is longer than its source.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace velk {

/// What becomes of a comma inside quotes.
enum class QuotedComma { Keep, Drop };

/// In bytes: no list of records has longer lines. A file with one is refused before it is split.
inline constexpr std::size_t maxLineLength = std::size_t{16} << 20;

inline constexpr char fieldEnd = '\0';

/// Writes fieldEnd in the place of every separating comma and returns the line's new length, which
/// is shorter by the commas dropped. Any NUL left inside ends a field, whoever wrote it.
std::size_t markFields(char* line, std::size_t length, QuotedComma quotedComma);

/// The fields of one line (no line end inside); an empty line has none.
std::vector<std::string> splitLine(std::string_view line, QuotedComma quotedComma);

/// How many fields splitLine makes of a line, counted without making them.
std::size_t countFields(std::string_view line);

/// A field that begins with a double quote loses its first and its last character, whatever that
/// is, and of every two double quotes inside one; any other field stays. The result begins
/// at `field`; its length is returned. Error 5 for the field of one double quote.
std::size_t unquoteInPlace(char* field, std::size_t length);

/// The same for a text of its own.
std::string unquoted(std::string_view field);

}  // namespace velk
