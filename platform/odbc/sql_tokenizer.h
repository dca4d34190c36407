// Cuts SQL text into tokens, just finely enough to rewrite it without touching what is quoted.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace velk {

enum class SqlTokenKind {
  Blank,
  Comment,       ///< "-- ..." or "/* ... */", which may be nested
  Word,          ///< keyword or plain identifier
  Number,        ///< starts with a digit
  Text,          ///< '...'
  NationalText,  ///< N'...'
  QuotedName,    ///< "..." or [...]
  Mark,          ///< ?
  Variable,      ///< @name, :name or $name
  Semicolon,
  Other,  ///< one character of anything else
};

struct SqlToken {
  SqlTokenKind kind;
  std::string_view text;  ///< with its quotes

  bool isBlank() const { return kind == SqlTokenKind::Blank || kind == SqlTokenKind::Comment; }
  bool isWord(std::string_view upperCase) const;
  bool is(char other) const { return kind == SqlTokenKind::Other && text.front() == other; }
};

/// Replaces the contents of `tokens`; their texts view into `sql`, and together they are all of it.
/// Error -2147217900 for a quotation or a comment that is not closed.
void tokenizeSql(std::string_view sql, std::vector<SqlToken>& tokens);

/// What a Text or NationalText token stands for: without quotes, doubled ones single.
void appendLiteral(const SqlToken& token, std::string& to);

}  // namespace velk
