#include "shared/csv_text.h"

#include <algorithm>
#include <cstring>

#include "base/errors.h"
#include "base/text.h"

namespace velk {

std::size_t markFields(char* line, std::size_t length, QuotedComma quotedComma) {
  // Most lines have no quotes, and then every comma separates.
  if (length == 0 || std::memchr(line, '"', length) == nullptr) {
    std::transform(line, line + length, line, [](char c) { return c == ',' ? fieldEnd : c; });
    return length;
  }
  bool quoted = false;
  char* to = line;
  for (const char* from = line; from != line + length; ++from) {
    char c = *from;
    if (c == '"') quoted = !quoted;
    if (c == ',' && !quoted) c = fieldEnd;
    // Separating commas are field ends by now, so that this one is inside quotes.
    if (c == ',' && quotedComma == QuotedComma::Drop) continue;
    *to++ = c;
  }
  return static_cast<std::size_t>(to - line);
}

std::vector<std::string> splitLine(std::string_view line, QuotedComma quotedComma) {
  std::vector<std::string> fields;
  // The loop below would make one empty field of it.
  if (line.empty()) return fields;
  std::string marked(line);
  marked.resize(markFields(marked.data(), marked.size(), quotedComma));
  std::string_view rest = marked;
  // Finds the NULs of the line itself, too: they separate like commas.
  for (std::size_t end = rest.find(fieldEnd); end != std::string_view::npos;
       end = rest.find(fieldEnd)) {
    fields.emplace_back(rest.substr(0, end));
    rest.remove_prefix(end + 1);
  }
  fields.emplace_back(rest);
  return fields;
}

std::size_t countFields(std::string_view line) {
  if (line.empty()) return 0;
  bool quoted = false;
  std::size_t fields = 1;
  for (const char c : line) {
    if (c == '"') quoted = !quoted;
    if (c == fieldEnd || (c == ',' && !quoted)) ++fields;
  }
  return fields;
}

std::size_t unquoteInPlace(char* field, std::size_t length) {
  if (length == 0 || field[0] != '"') return length;
  // Without two characters its length would be -1.
  if (length == 1) throw RuntimeError(ErrorNumber::InvalidProcedureCall);
  // The last character is cut even if it is no quote, and it may be of several bytes.
  const std::size_t last = lastCharacter({field + 1, length - 1}) + 1;
  char* to = field;
  for (std::size_t i = 1; i < last; ++i) {
    // The next one may be the last character, which is cut: it makes a pair all the same.
    const bool doubled = field[i] == '"' && field[i + 1] == '"';
    *to++ = field[i];
    if (doubled) ++i;
  }
  return static_cast<std::size_t>(to - field);
}

std::string unquoted(std::string_view field) {
  std::string text(field);
  text.resize(unquoteInPlace(text.data(), text.size()));
  return text;
}

}  // namespace velk
