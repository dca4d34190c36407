// The prepared statements that a connection keeps for their next use.
#pragma once

#include <list>
#include <string>
#include <string_view>
#include <unordered_map>

#include "platform/odbc/prepared_statement.h"

namespace velk {

/// Bounded: the statement that has not been used for longest goes first.
class StatementCache {
 public:
  /// More than an import uses; a bound for a program that makes up new texts for ever.
  static constexpr std::size_t capacity = 64;

  explicit StatementCache(OdbcSession& session) : session_(session) {}

  /// The statement for a text, prepared now if it is not kept. Valid until the next call. Errors:
  /// what the driver says about the text, which is not kept then.
  PreparedStatement& get(std::string_view sql);

 private:
  struct Entry {
    Entry(OdbcSession& session, std::string_view text) : sql(text), statement(session, text) {}
    std::string sql;
    PreparedStatement statement;
  };
  using Entries = std::list<Entry>;  // most recently used first

  OdbcSession& session_;
  Entries entries_;
  std::unordered_map<std::string_view, Entries::iterator> byText_;  // views into the entries
};

}  // namespace velk
