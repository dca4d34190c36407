#include "platform/odbc/sqlite_dialect.h"

#include <algorithm>
#include <limits>

#include "base/errors.h"
#include "base/text.h"

namespace velk {
namespace {

using Tokens = std::vector<SqlToken>;
using Kind = SqlTokenKind;

// A longer literal stays in the text: the buffers of parameters hold this many characters.
constexpr std::size_t maxLiftedLiteral = 2048;

constexpr SqlToken nothing{Kind::Blank, {}};

[[noreturn]] void refuse(const std::string& why) {
  throw RuntimeError(ErrorNumber::CommandErrors, why);
}

/// First token from `at` on that is no blank; size() when there is none.
std::size_t skipBlanks(const Tokens& tokens, std::size_t at) {
  while (at < tokens.size() && tokens[at].isBlank()) ++at;
  return at;
}

/// Last token before `at` that is no blank; size() when there is none.
std::size_t previous(const Tokens& tokens, std::size_t at) {
  while (at > 0) {
    if (!tokens[--at].isBlank()) return at;
  }
  return tokens.size();
}

bool isWordAt(const Tokens& tokens, std::size_t at, std::string_view word) {
  return at < tokens.size() && tokens[at].isWord(word);
}

/// The ")" for the "(" at `open`; size() when it is missing.
std::size_t closingParenthesis(const Tokens& tokens, std::size_t open) {
  int depth = 0;
  for (std::size_t i = open; i < tokens.size(); ++i) {
    if (tokens[i].is('(')) ++depth;
    if (tokens[i].is(')') && --depth == 0) return i;
  }
  return tokens.size();
}

void refuseWhatNeedsAScript(const Tokens& tokens, bool marksAllowed) {
  bool ended = false;
  for (const SqlToken& token : tokens) {
    if (token.isBlank()) continue;
    if (token.kind == Kind::Semicolon) {
      ended = true;
      continue;
    }
    if (ended) refuse("Only one statement can be run at a time.");
    if (token.kind == Kind::Variable) {
      refuse("The variable \"" + std::string(token.text) + "\" is not declared.");
    }
    if (token.kind == Kind::Mark && !marksAllowed) refuse("A parameter mark has no value.");
  }
}

// isnull(a, b) with exactly two arguments; the engine's own "a isnull" is another thing.
void rewriteIsNull(Tokens& tokens, std::size_t at) {
  const std::size_t open = skipBlanks(tokens, at + 1);
  if (open >= tokens.size() || !tokens[open].is('(')) return;
  const std::size_t close = closingParenthesis(tokens, open);
  int depth = 0;
  int commas = 0;
  for (std::size_t i = open; i < close; ++i) {
    if (tokens[i].is('(')) ++depth;
    if (tokens[i].is(')')) --depth;
    if (tokens[i].is(',') && depth == 1) ++commas;
  }
  if (commas == 1) tokens[at].text = "ifnull";
}

void rewriteGetDate(Tokens& tokens, std::size_t at) {
  const std::size_t open = skipBlanks(tokens, at + 1);
  const std::size_t close = skipBlanks(tokens, open + 1);
  if (close >= tokens.size() || !tokens[open].is('(') || !tokens[close].is(')')) return;
  tokens[at].text = "datetime('now','localtime')";
  tokens[open] = nothing;
  tokens[close] = nothing;
}

bool isSetOperator(const SqlToken& token) {
  return token.isWord("UNION") || token.isWord("EXCEPT") || token.isWord("INTERSECT");
}

struct TopClause {
  std::size_t select;      ///< the SELECT it belongs to
  std::size_t countBegin;  ///< its count: a number, or an expression in parentheses
  std::size_t countEnd;
};

/// The clause whose word TOP stands at `top`; false when that is a name.
bool readTopClause(const Tokens& tokens, std::size_t top, TopClause& clause) {
  clause.select = previous(tokens, top);
  if (isWordAt(tokens, clause.select, "DISTINCT") || isWordAt(tokens, clause.select, "ALL")) {
    clause.select = previous(tokens, clause.select);
  }
  if (!isWordAt(tokens, clause.select, "SELECT")) return false;
  clause.countBegin = skipBlanks(tokens, top + 1);
  if (clause.countBegin >= tokens.size()) return false;
  const SqlToken& count = tokens[clause.countBegin];
  if (count.is('(')) {
    clause.countEnd = std::min(closingParenthesis(tokens, clause.countBegin) + 1, tokens.size());
  } else {
    clause.countEnd = clause.countBegin + 1;
  }
  return count.is('(') || count.kind == Kind::Number;
}

bool followsSetOperator(const Tokens& tokens, std::size_t select) {
  std::size_t before = previous(tokens, select);
  if (isWordAt(tokens, before, "ALL")) before = previous(tokens, before);
  return before < tokens.size() && isSetOperator(tokens[before]);
}

struct SelectEnd {
  std::size_t at;
  bool compound;  ///< one of several selects joined by set operators
};

SelectEnd findSelectEnd(const Tokens& tokens, const TopClause& clause) {
  bool compound = followsSetOperator(tokens, clause.select);
  std::size_t i = clause.countEnd;
  for (int depth = 0; i < tokens.size(); ++i) {
    const SqlToken& token = tokens[i];
    if (token.is('(')) ++depth;
    if (token.is(')') && --depth < 0) break;
    if (depth > 0) continue;
    if (token.kind == Kind::Semicolon || (compound && token.isWord("ORDER"))) break;
    if (isSetOperator(token)) {
      compound = true;
      break;
    }
  }
  return {i, compound};
}

void rewriteTop(Tokens& tokens, std::size_t top) {
  TopClause clause{};
  if (!readTopClause(tokens, top, clause)) return;
  const std::size_t after = skipBlanks(tokens, clause.countEnd);
  if (isWordAt(tokens, after, "PERCENT") || isWordAt(tokens, after, "WITH")) {
    refuse("TOP with PERCENT or WITH TIES is not supported by this database.");
  }
  const auto at = [&](std::size_t index) { return tokens.begin() + static_cast<long>(index); };
  const SelectEnd end = findSelectEnd(tokens, clause);
  Tokens limit{{Kind::Other, " LIMIT "}};
  limit.insert(limit.end(), at(clause.countBegin), at(clause.countEnd));
  limit.push_back({Kind::Other, end.compound ? ") " : " "});
  std::fill(at(top), at(clause.countEnd), nothing);
  tokens.insert(at(end.at), limit.begin(), limit.end());
  // A limit may stand only at the end of the whole, so that a part of it needs a select of its own.
  if (end.compound) tokens.insert(at(clause.select), {Kind::Other, "SELECT * FROM ("});
}

// From the end to the start, so that what is inserted leaves the places still to come alone, and an
// inner select is done before the one around it.
void rewriteWords(Tokens& tokens) {
  for (std::size_t i = tokens.size(); i-- > 0;) {
    if (tokens[i].kind != Kind::Word) continue;
    if (tokens[i].isWord("ISNULL")) {
      rewriteIsNull(tokens, i);
    } else if (tokens[i].isWord("GETDATE")) {
      rewriteGetDate(tokens, i);
    } else if (tokens[i].isWord("TOP")) {
      rewriteTop(tokens, i);
    }
  }
}

void appendBracketedName(std::string_view name, std::string& sql) {
  sql += " \"";
  for (std::size_t i = 1; i + 1 < name.size(); ++i) {
    if (name[i] == '"') sql += '"';
    if (name[i] == ']') ++i;
    sql += name[i];
  }
  sql += "\" ";
}

// Drivers and their manager do not agree on what other characters than ASCII are in a statement, so
// that such a text travels as its bytes.
void appendAsBytes(const SqlToken& token, std::string& sql) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string text;
  appendLiteral(token, text);
  sql += "(CAST(x'";
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    sql += digits[byte >> 4];
    sql += digits[byte & 15];
  }
  sql += "' AS TEXT))";
}

void appendText(const SqlToken& token, std::string& sql) {
  if (!isAscii(token.text)) return appendAsBytes(token, sql);
  if (token.kind == Kind::NationalText) sql += ' ';
  sql += token.text.substr(token.text.find('\''));
}

// Blanks around whatever changes its length or shape: two neighbours must not become one token.
void appendToken(const SqlToken& token, std::string& sql) {
  switch (token.kind) {
    case Kind::Blank:
      if (token.text.empty()) break;
      [[fallthrough]];
    case Kind::Comment:
      sql += ' ';
      break;
    case Kind::Semicolon:
      break;
    case Kind::Text:
    case Kind::NationalText:
      appendText(token, sql);
      break;
    case Kind::QuotedName:
      if (token.text.front() == '[') {
        appendBracketedName(token.text, sql);
        break;
      }
      [[fallthrough]];
    default:
      sql += token.text;
  }
}

bool isLiftable(const SqlToken& token, const SqlToken& before) {
  return (token.kind == Kind::Text || token.kind == Kind::NationalText) &&
         (before.is('=') || before.is('<') || before.is('>')) &&
         token.text.size() <= maxLiftedLiteral;
}

std::string& nextLiteral(Translation& to) {
  if (to.literalCount == to.literals.size()) to.literals.emplace_back();
  std::string& literal = to.literals[to.literalCount++];
  literal.clear();
  return literal;
}

// Where the quotation marks of a literal token stand.
const char* openingQuote(const SqlToken& token) {
  return token.text.data() + token.text.find('\'');
}
const char* closingQuote(const SqlToken& token) {
  return token.text.data() + token.text.size() - 1;
}

// Beside a comparison sign a literal and a parameter mean the same to the engine. Elsewhere (column
// titles, LIMIT, LIKE) they need not.
void appendLifting(std::string_view statement, const Tokens& tokens, Translation& to) {
  const char* from = statement.data();
  bool inOrder = true;  // a count moved to its LIMIT may bring literals with it
  SqlToken before = nothing;
  for (const SqlToken& token : tokens) {
    if (isLiftable(token, before)) {
      appendLiteral(token, nextLiteral(to));
      to.sql += " ? ";
      inOrder = inOrder && openingQuote(token) >= from;
      if (inOrder) to.around.emplace_back(from, openingQuote(token) + 1);
      from = closingQuote(token);
    } else {
      appendToken(token, to.sql);
    }
    if (!token.isBlank()) before = token;
  }
  if (inOrder) {
    to.around.emplace_back(from, statement.data() + statement.size());
  } else {
    to.around.clear();
  }
}

// True, with the new literals taken, when the statement is the one before with other literals.
// Those hold no quotation mark, so that reading it anew would find the same tokens around them.
bool takeLiterals(std::string_view statement, Translation& to) {
  if (to.around.empty() || !statement.starts_with(to.around.front())) return false;
  statement.remove_prefix(to.around.front().size());
  to.literalCount = 0;
  for (std::size_t i = 1; i < to.around.size(); ++i) {
    const std::size_t length = std::min(statement.find('\''), statement.size());
    const std::string_view literal = statement.substr(0, length);
    statement.remove_prefix(length);
    if (length > maxLiftedLiteral || literal.find('\0') != std::string_view::npos) return false;
    if (!statement.starts_with(to.around[i])) return false;
    statement.remove_prefix(to.around[i].size());
    nextLiteral(to) = literal;
  }
  return statement.empty();
}

void readStatement(std::string_view text, bool marksAllowed, Tokens& tokens) {
  if (text.find('\0') != std::string_view::npos) refuse("A NUL character is in the statement.");
  tokenizeSql(text, tokens);
  refuseWhatNeedsAScript(tokens, marksAllowed);
  rewriteWords(tokens);
}

std::string_view stateOf(std::int32_t resultCode, std::string_view message) {
  constexpr std::int32_t primaryCode = 0xFF;  // extended codes add higher bits
  switch (resultCode & primaryCode) {
    case 1:  // SQL error
      return message.find("no such table") == std::string_view::npos ? "42000" : "42S02";
    case 3:   // access permission denied
    case 8:   // attempt to write a read-only database
    case 23:  // authorization denied
      return "42501";
    case 5:  // database is locked
    case 6:  // table is locked
      return "HYT00";
    case 14:  // unable to open the file
    case 26:  // not a database
      return "08001";
    case 18:  // text or row too big
      return "22001";
    case 19:  // constraint
      return "23000";
    default:
      return {};
  }
}

}  // namespace

// The driver waits for locks in a way of its own, 100 seconds long unless told so when connecting.
std::string SqliteDialect::connectionSettings(const OdbcOptions& options) const {
  constexpr int waitsPerStatement = 2;  // the driver waits its limit, tries again and waits anew
  constexpr int forEver = std::numeric_limits<int>::max();
  const int seconds = options.commandTimeoutSeconds;
  const int wait =
      seconds <= 0 || seconds > forEver / 1000 ? forEver : seconds * 1000 / waitsPerStatement;
  return "Timeout=" + std::to_string(wait);
}

std::vector<std::string> SqliteDialect::openingStatements() const {
  // The second reads the file: one that is no database is found out here.
  return {"PRAGMA foreign_keys = ON", "PRAGMA schema_version"};
}

void SqliteDialect::translateQuery(std::string_view text, Translation& to) const {
  if (takeLiterals(text, to)) return;
  to.sql.clear();
  to.literalCount = 0;
  to.around.clear();
  readStatement(text, false, tokens_);
  to.reusable = isWordAt(tokens_, skipBlanks(tokens_, 0), "SELECT");
  if (to.reusable) {
    appendLifting(text, tokens_, to);
  } else {
    for (const SqlToken& token : tokens_) appendToken(token, to.sql);
  }
}

std::string SqliteDialect::translateCommand(std::string_view text) const {
  readStatement(text, true, tokens_);
  std::string sql;
  for (const SqlToken& token : tokens_) appendToken(token, sql);
  return sql;
}

std::string SqliteDialect::keptPrepared(std::string_view native) const {
  tokenizeSql(native, tokens_);
  const std::size_t first = skipBlanks(tokens_, 0);
  const bool writes = isWordAt(tokens_, first, "INSERT") || isWordAt(tokens_, first, "UPDATE") ||
                      isWordAt(tokens_, first, "DELETE") || isWordAt(tokens_, first, "REPLACE");
  return std::string(writes ? "WITH kept AS (SELECT 1) " : "").append(native);
}

Diagnostic SqliteDialect::normalized(Diagnostic diagnostic) const {
  if (diagnostic.state != "HY000") return diagnostic;
  const std::string_view state = stateOf(diagnostic.native, diagnostic.message);
  if (!state.empty()) diagnostic.state = state;
  return diagnostic;
}

}  // namespace velk
