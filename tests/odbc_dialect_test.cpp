#include <doctest/doctest.h>

#include "platform/errors.h"
#include "platform/odbc/sql_tokenizer.h"
#include "platform/odbc/sqlite_dialect.h"
#include "tests/support/checks.h"

namespace velk {
namespace {

constexpr auto refused = static_cast<std::int32_t>(ErrorNumber::CommandErrors);

// One letter a token, "." for blanks.
std::string kinds(std::string_view sql) {
  std::vector<SqlToken> tokens;
  tokenizeSql(sql, tokens);
  std::string letters;
  std::string whole;
  for (const SqlToken& token : tokens) {
    letters += ".cwntTq?v;o"[static_cast<int>(token.kind)];
    whole += token.text;
  }
  CHECK(whole == sql);
  return letters;
}

TEST_CASE("sql tokens") {
  struct Row {
    std::string sql;
    std::string kinds;
  };
  const Row rows[] = {
      {"", ""},
      {"select a1, 12.5\n", "w.wo.n."},
      {"'it''s' N'x' n''", "t.T.T"},
      {"xN'a'", "wt"},  // the N belongs to the word
      {"'a''b'N'c'", "tT"},
      {R"("a ""b" [c ]]d])", "q.q"},
      {"? @x @@y :z $1 a:b", "?.v.v.v.v.wv"},
      {"a -- b 'c\nd", "w.c.w"},
      {"/* a /* b */ c */d", "cw"},
      {"a-b/c; '--' '/*'", "wowow;.t.t"},
      {"M\xC3\xBCller_2", "w"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.sql);
    CHECK(kinds(row.sql) == row.kinds);
  }
  for (const std::string open :
       {"'", "'a''", "N'", "\"a", "[a", "[a]]", "/* a", "/* a /* b */", "/*/"}) {
    CAPTURE(open);
    CHECK(errorOf([&] { kinds(open); }) == refused);
  }
}

std::string collapsed(std::string_view sql) {
  std::string text;
  for (const char c : sql) {
    if (c != ' ' || (!text.empty() && text.back() != ' ')) text += c;
  }
  while (!text.empty() && text.back() == ' ') text.pop_back();
  return text;
}

TEST_CASE("sqlite dialect: rewriting") {
  struct Row {
    std::string from;
    std::string to;
  };
  const Row rows[] = {
      {"SELECT TOP 1 OpeningDate FROM Setup", "SELECT OpeningDate FROM Setup LIMIT 1"},
      {"select distinct top (2+1) a from t order by a;",
       "select distinct a from t order by a LIMIT (2+1)"},
      {"select a from t where b in (select top 3 b from u where c in (select top 1 c from v)) and "
       "d",
       "select a from t where b in (select b from u where c in (select c from v LIMIT 1 ) LIMIT 3 "
       ") and d"},
      {"select top 1 a from t union all select top 2 b from u order by 1",
       "SELECT * FROM (select a from t LIMIT 1) union all SELECT * FROM (select b from u LIMIT 2) "
       "order by 1"},
      {"select top from t", "select top from t"},
      {"select a.top, 'top 1' from t", "select a.top, 'top 1' from t"},
      {"SELECT GETDATE()", "SELECT datetime('now','localtime')"},
      {"select getdate ( ), getdate", "select datetime('now','localtime') , getdate"},
      {"select isnull((select a from t where b in (1,2)),'No')",
       "select ifnull((select a from t where b in (1,2)),'No')"},
      {"select ISNULL(isnull(a,b),c)", "select ifnull(ifnull(a,b),c)"},
      {"select a isnull, isnull(a), isnull(a,b,c)", "select a isnull, isnull(a), isnull(a,b,c)"},
      {"select N'a''b', x'00', 'N''c'", "select 'a''b', x'00', 'N''c'"},
      {"select 'a'N'b'", "select 'a' 'b'"},  // never one literal
      {R"(select [a]]b"c], "d"[e])", R"(select "a]b""c" , "d" "e")"},
      {"select a/* 'x */from t -- it's", "select a from t"},
      {"select '/*', '--', 'isnull(a,b)', 'GETDATE()'",
       "select '/*', '--', 'isnull(a,b)', 'GETDATE()'"},
      {"select 'é''', N'\xF0\x9F\x98\x80'",
       "select (CAST(x'C3A927' AS TEXT)), (CAST(x'F09F9880' AS TEXT))"},
      {"insert into t values ('a=''b''', ?)", "insert into t values ('a=''b''', ?)"},
  };
  const SqliteDialect dialect;
  for (const Row& row : rows) {
    CAPTURE(row.from);
    CHECK(collapsed(dialect.translateCommand(row.from)) == row.to);
  }
}

struct Lifted {
  std::string from;
  std::string to;
  std::vector<std::string> literals;
};

void checkLifting(const SqliteDialect& dialect, const Lifted& row, Translation& translation) {
  CAPTURE(row.from);
  dialect.translateQuery(row.from, translation);
  CHECK(collapsed(translation.sql) == row.to);
  const std::vector<std::string> literals(
      translation.literals.begin(),
      translation.literals.begin() + static_cast<long>(translation.literalCount));
  CHECK(literals == row.literals);
}

TEST_CASE("sqlite dialect: literals beside a comparison become parameters") {
  const Lifted rows[] = {
      {"select count(*) from C where I=N'C1'", "select count(*) from C where I= ?", {"C1"}},
      {"select count(*) from C where I=N'C2'", "select count(*) from C where I= ?", {"C2"}},
      {"select count(*) from C where I=N'a''b'", "select count(*) from C where I= ?", {"a'b"}},
      {"select count(*) from C where I=N''''", "select count(*) from C where I= ?", {"'"}},
      {"select count(*) from C where I=N'C3'", "select count(*) from C where I= ?", {"C3"}},
      {"select count(*) from C where I=N'x' or '1'='1'",
       "select count(*) from C where I= ? or '1'= ?",
       {"x", "1"}},
      {"select count(*) from C where I=N'y' or '1'='2'",
       "select count(*) from C where I= ? or '1'= ?",
       {"y", "2"}},
      {"select count(*) from C where I=N'C4' --'", "select count(*) from C where I= ?", {"C4"}},
      {"select 'a', b 'c' from t where d like 'e%' and f<>'g' and h in ('i')",
       "select 'a', b 'c' from t where d like 'e%' and f<> ? and h in ('i')",
       {"g"}},
      {"select 1 where a='b'1", "select 1 where a= ? 1", {"b"}},
      {"select top (case when 'a'='b' then 1 end) c from t where d='e'",
       "select c from t where d= ? LIMIT (case when 'a'= ? then 1 end)",
       {"e", "b"}},
      {"select top (case when 'a'='f' then 1 end) c from t where d='g'",
       "select c from t where d= ? LIMIT (case when 'a'= ? then 1 end)",
       {"g", "f"}},
      {"select I from C", "select I from C", {}},
      {"update C set I='a' where J='b'", "update C set I='a' where J='b'", {}},
  };
  const SqliteDialect dialect;
  Translation shared;  // as a connection keeps it: what one text leaves must not reach the next
  for (const Lifted& row : rows) {
    Translation fresh;
    checkLifting(dialect, row, fresh);
    checkLifting(dialect, row, shared);
  }
}

TEST_CASE("sqlite dialect: what is no single, complete query") {
  const std::string_view rows[] = {
      "select 1; drop table t",
      "select count(*) from C where I=N''; drop table C--'",
      "select count(*) from C where I=N'O'Brien'",
      "select 1 where a=?",
      "select 1 where a='b' and c=@d",
      "select 1 where a=:b",
      "select top 5 percent a from t",
      "select top 5 with ties a from t",
      std::string_view("select 1 where a='b\0c'", 22),
  };
  const SqliteDialect dialect;
  Translation translation;
  dialect.translateQuery("select count(*) from C where I=N'C1'", translation);
  for (const std::string_view row : rows) {
    CAPTURE(row);
    CHECK(errorOf([&] { dialect.translateQuery(row, translation); }) == refused);
  }
  CHECK(errorOf([&] { dialect.translateQuery("select 1;; ;", translation); }) == 0);
}

TEST_CASE("sqlite dialect: native codes as states") {
  struct Row {
    std::string state;
    std::int32_t native;
    std::string message;
    std::string normalized;
  };
  const Row rows[] = {
      {"HY000", 5, "database is locked (5)", "HYT00"},
      {"HY000", 6, "database table is locked (6)", "HYT00"},
      {"HY000", 517, "database is locked (517)", "HYT00"},  // an extended code
      {"HY000", 19, "UNIQUE constraint failed: t.a (19)", "23000"},
      {"HY000", 787, "FOREIGN KEY constraint failed (787)", "23000"},
      {"HY000", 1, "no such table: t (1)", "42S02"},
      {"HY000", 1, "near \"frm\": syntax error (1)", "42000"},
      {"HY000", 8, "attempt to write a readonly database (8)", "42501"},
      {"HY000", 18, "string or blob too big (18)", "22001"},
      {"HY000", 26, "file is not a database (26)", "08001"},
      {"HY000", 13, "database or disk is full (13)", "HY000"},
      {"HY000", -1, "unbound parameters in query", "HY000"},
      {"IM002", 0, "Data source name not found", "IM002"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.message);
    CHECK(SqliteDialect().normalized({row.state, row.native, row.message}).state == row.normalized);
  }
}

}  // namespace
}  // namespace velk
