#include "platform/odbc/sql_tokenizer.h"

#include <algorithm>
#include <array>

#include "base/errors.h"
#include "base/text.h"

namespace velk {
namespace {

// What a character may be part of, as bits.
enum CharacterClass : unsigned char {
  blank = 1,
  digit = 2,
  wordStart = 4,
  wordPart = 8,
  number = 16
};

constexpr std::array<unsigned char, 256> classify() {
  std::array<unsigned char, 256> classes{};
  const auto add = [&](std::string_view characters, unsigned bits) {
    for (const char c : characters) {
      unsigned char& known = classes[static_cast<unsigned char>(c)];
      known = static_cast<unsigned char>(known | bits);
    }
  };
  add(" \t\n\r\v\f", blank);
  add("0123456789", digit | wordPart | number);
  add("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_#", wordStart | wordPart | number);
  for (std::size_t i = 0x80; i < classes.size(); ++i) classes[i] = wordStart | wordPart | number;
  add("@$", wordPart | number);
  add(".", number);
  return classes;
}

constexpr std::array<unsigned char, 256> classes = classify();

bool is(char c, CharacterClass kind) {
  return (classes[static_cast<unsigned char>(c)] & kind) != 0;
}

[[noreturn]] void refuse(const char* why) {
  throw RuntimeError(ErrorNumber::CommandErrors, why);
}

class Scanner {
 public:
  explicit Scanner(std::string_view sql) : sql_(sql) {}

  bool atEnd() const { return at_ == sql_.size(); }

  SqlToken next() {
    const std::size_t start = at_;
    const SqlTokenKind kind = take();
    return {kind, sql_.substr(start, at_ - start)};
  }

 private:
  SqlTokenKind take() {
    const char c = sql_[at_];
    if (is(c, blank)) return takeWhile(blank, SqlTokenKind::Blank);
    if (c == '\'') return takeQuoted('\'', SqlTokenKind::Text);
    if ((c == 'N' || c == 'n') && peek(1) == '\'') {
      ++at_;
      return takeQuoted('\'', SqlTokenKind::NationalText);
    }
    if (is(c, wordStart)) return takeWhile(wordPart, SqlTokenKind::Word);
    if (is(c, digit)) return takeWhile(number, SqlTokenKind::Number);
    if (c == '"') return takeQuoted('"', SqlTokenKind::QuotedName);
    if (c == '[') return takeQuoted(']', SqlTokenKind::QuotedName);
    if (c == '-' && peek(1) == '-') return takeLineComment();
    if (c == '/' && peek(1) == '*') return takeBlockComment();
    return takeSign(c);
  }

  SqlTokenKind takeSign(char c) {
    ++at_;
    if (c == '?') return SqlTokenKind::Mark;
    if (c == ';') return SqlTokenKind::Semicolon;
    if (c == '@' || c == '$' || (c == ':' && is(peek(0), wordPart))) {
      return takeWhile(wordPart, SqlTokenKind::Variable);
    }
    return SqlTokenKind::Other;
  }

  SqlTokenKind takeWhile(CharacterClass part, SqlTokenKind kind) {
    while (!atEnd() && is(sql_[at_], part)) ++at_;
    return kind;
  }

  // A doubled closing quote stands for itself.
  SqlTokenKind takeQuoted(char close, SqlTokenKind kind) {
    for (++at_; !atEnd(); ++at_) {
      if (sql_[at_] != close) continue;
      if (peek(1) != close) {
        ++at_;
        return kind;
      }
      ++at_;
    }
    refuse("A quotation mark in the statement is not closed.");
  }

  SqlTokenKind takeLineComment() {
    at_ = std::min(sql_.find('\n', at_), sql_.size());
    return SqlTokenKind::Comment;
  }

  SqlTokenKind takeBlockComment() {
    int depth = 0;
    while (at_ + 1 < sql_.size()) {
      const std::string_view pair = sql_.substr(at_, 2);
      at_ += pair == "/*" || pair == "*/" ? 2 : 1;
      if (pair == "/*") ++depth;
      if (pair == "*/" && --depth == 0) return SqlTokenKind::Comment;
    }
    refuse("A comment in the statement is not closed.");
  }

  char peek(std::size_t ahead) const {
    return at_ + ahead < sql_.size() ? sql_[at_ + ahead] : '\0';
  }

  std::string_view sql_;
  std::size_t at_ = 0;
};

}  // namespace

bool SqlToken::isWord(std::string_view upperCase) const {
  return kind == SqlTokenKind::Word && equalsIgnoringCase(text, upperCase);
}

void tokenizeSql(std::string_view sql, std::vector<SqlToken>& tokens) {
  tokens.clear();
  Scanner scanner(sql);
  while (!scanner.atEnd()) tokens.push_back(scanner.next());
}

void appendLiteral(const SqlToken& token, std::string& to) {
  std::string_view inside = token.text;
  inside.remove_prefix(token.kind == SqlTokenKind::NationalText ? 2 : 1);
  inside.remove_suffix(1);
  for (std::size_t quote; (quote = inside.find('\'')) != std::string_view::npos;) {
    to.append(inside.substr(0, quote + 1));
    inside.remove_prefix(quote + 2);
  }
  to.append(inside);
}

}  // namespace velk
