#include "platform/odbc/procedure_step.h"

#include <algorithm>
#include <array>

#include "base/text.h"

namespace velk {
namespace {

constexpr std::string_view whitespace = " \t\r\n\f";

/// Length of what a text begins with, if that is a comment or in quotes; else 1. What does not end
/// goes as far as the text.
std::size_t pieceLength(std::string_view sql) {
  const auto upTo = [&](std::string_view mark, std::size_t from) {
    const std::size_t end = sql.find(mark, from);
    return end == std::string_view::npos ? sql.size() : end + mark.size();
  };
  if (sql.starts_with("--")) return upTo("\n", 2);
  if (sql.starts_with("/*")) return upTo("*/", 2);
  switch (sql.front()) {
    // A doubled quote ends one piece and begins the next.
    case '\'':
    case '"':
    case '`':
      return upTo(sql.substr(0, 1), 1);
    case '[':
      return upTo("]", 1);
    default:
      return 1;
  }
}

bool isComment(std::string_view sql) {
  return sql.starts_with("--") || sql.starts_with("/*");
}

/// Whether a semicolon ends the statement and something else than comments follows.
bool hasSecondStatement(std::string_view sql) {
  bool ended = false;
  while (!sql.empty()) {
    if (ended && !isComment(sql) && sql.front() != ';' &&
        whitespace.find(sql.front()) == std::string_view::npos) {
      return true;
    }
    ended = ended || sql.front() == ';';
    sql.remove_prefix(pieceLength(sql));
  }
  return false;
}

std::string_view firstWord(std::string_view sql) {
  while (!sql.empty() &&
         (isComment(sql) || whitespace.find(sql.front()) != std::string_view::npos)) {
    sql.remove_prefix(pieceLength(sql));
  }
  return sql.substr(0, sql.find_first_of(" \t\r\n\f;('\"`[/-"));
}

}  // namespace

std::string_view faultOfStep(std::string_view sql) {
  constexpr std::array<std::string_view, 5> allowed{"SELECT", "INSERT", "UPDATE", "DELETE", "WITH"};
  const std::string_view word = firstWord(sql);
  if (std::ranges::none_of(allowed, [&](auto each) { return equalsIgnoringCase(each, word); })) {
    return "is no statement that begins with SELECT, INSERT, UPDATE, DELETE or WITH";
  }
  if (hasSecondStatement(sql)) return "has more than one statement";
  // They load a library, and read and write files. A name in quotes is a name, too.
  const std::string lower = lowerAscii(sql);
  for (const std::string_view name : {"load_extension", "blob_import", "blob_export"}) {
    if (lower.find(name) != std::string::npos) return "reaches beyond the database";
  }
  return {};
}

}  // namespace velk
