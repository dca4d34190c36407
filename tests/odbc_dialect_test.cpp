#include <doctest/doctest.h>

#include "base/errors.h"
#include "platform/odbc/sqlite_dialect.h"
#include "tests/support/checks.h"

namespace velk {
namespace {

std::string collapsed(std::string_view sql) {
  std::string text;
  for (const char c : sql) {
    if (c != ' ' || (!text.empty() && text.back() != ' ')) text += c;
  }
  while (!text.empty() && text.back() == ' ') text.pop_back();
  return text;
}

TEST_CASE("sqlite dialect: rewriting") {
  const struct {
    std::string from, to;
  } rows[] = {
      {"SELECT TOP 1 OpeningDate FROM Setup", "SELECT OpeningDate FROM Setup LIMIT 1"},
      {"select distinct top (2+1) a from t order by a;",
       "select distinct a from t order by a LIMIT (2+1)"},
      {"select a from t where b in (select top 3 b from u where c in (select top 1 c from v)) or d",
       "select a from t where b in (select b from u where c in (select c from v LIMIT 1 ) LIMIT 3 "
       ") or d"},
      {"select top 1 a from t union all select top 2 b from u order by 1",
       "SELECT * FROM (select a from t LIMIT 1) union all SELECT * FROM (select b from u LIMIT 2) "
       "order by 1"},
      {"select top, a.top, 'top 1' from t", "select top, a.top, 'top 1' from t"},
      {"select getdate ( ), GETDATE", "select datetime('now','localtime') , GETDATE"},
      {"select ISNULL(isnull((select a from t where b in (1,2)),b),'No')",
       "select ifnull(ifnull((select a from t where b in (1,2)),b),'No')"},
      {"select a isnull, isnull(a), isnull(a,b,c)", "select a isnull, isnull(a), isnull(a,b,c)"},
      {"select N'a''b', n'', x'00', xN'a', 'N''c'", "select 'a''b', '', x'00', xN'a', 'N''c'"},
      {"select 'a'N'b'", "select 'a' 'b'"},  // never one literal
      {R"(select [a]]b"c], "d"[e], "f ""g")", R"(select "a]b""c" , "d" "e" , "f ""g")"},
      {"select a/* 'x /* y */ z */from t -- it's\nwhere b", "select a from t where b"},
      {"select '/*', '--', ';', 'isnull(a,b)', 'GETDATE()', a-b/c",
       "select '/*', '--', ';', 'isnull(a,b)', 'GETDATE()', a-b/c"},
      {"select M\xC3\xBCller_2, 'é''', N'\xF0\x9F\x98\x80'",
       "select M\xC3\xBCller_2, (CAST(x'C3A927' AS TEXT)), (CAST(x'F09F9880' AS TEXT))"},
      {"insert into t values ('a=''b''', ?)", "insert into t values ('a=''b''', ?)"},
  };
  for (const auto& row : rows) {
    CAPTURE(row.from);
    CHECK(collapsed(SqliteDialect().translateCommand(row.from)) == row.to);
  }
}

TEST_CASE("sqlite dialect: literals beside a comparison become parameters") {
  struct Row {
    std::string from;
    std::string to;
    Texts literals;
  };
  const Row rows[] = {
      {"select 1 from C where I=N'C1'", "select 1 from C where I= ?", {"C1"}},
      {"select 1 from C where I=N'a''b'", "select 1 from C where I= ?", {"a'b"}},
      {"select 1 from C where I=N''''", "select 1 from C where I= ?", {"'"}},
      {"select 1 from C where I=N'x' or '1'='1'",
       "select 1 from C where I= ? or '1'= ?",
       {"x", "1"}},
      {"select 1 from C where I=N'C4' --'", "select 1 from C where I= ?", {"C4"}},
      {"select 'a', b 'c' from t where d like 'e%' and f<>'g' and h in ('i')",
       "select 'a', b 'c' from t where d like 'e%' and f<> ? and h in ('i')",
       {"g"}},
      {"select 1 where a='b'1", "select 1 where a= ? 1", {"b"}},
      // The count, with its literal, goes to the end.
      {"select top ('a'='b') c from t where d='e'",
       "select c from t where d= ? LIMIT ('a'= ? )",
       {"e", "b"}},
      {"select I from C", "select I from C", {}},
      {"update C set I='a' where J='b'", "update C set I='a' where J='b'", {}},
  };
  const SqliteDialect dialect;
  Translation shared;  // as a connection keeps it: what one text leaves must not reach the next
  for (const auto& row : rows) {
    CAPTURE(row.from);
    Translation fresh;
    for (Translation* translation : {&fresh, &shared}) {
      dialect.translateQuery(row.from, *translation);
      CHECK(collapsed(translation->sql) == row.to);
      Texts literals = translation->literals;
      literals.resize(translation->literalCount);
      CHECK(literals == row.literals);
    }
  }
}

TEST_CASE("sqlite dialect: what is no single, complete query") {
  using namespace std::string_view_literals;
  const SqliteDialect dialect;
  Translation translation;
  dialect.translateQuery("select 1 from C where I=N'C1'", translation);
  for (const std::string_view text : {"select 1; drop table t"sv,
                                      "select 1 from C where I=N''; drop table C--'"sv,
                                      "select 1 from C where I=N'O'Brien'"sv,
                                      "select 1 from C where I=N'a\0b'"sv,
                                      "select 1 where a=?"sv,
                                      "select 1 where a='b' and c=@d"sv,
                                      "select @@y"sv,
                                      "select $1"sv,
                                      "select 1 where a=:b"sv,
                                      "select top 5 percent a from t"sv,
                                      "select top 5 with ties a from t"sv,
                                      "'"sv,
                                      "'a''"sv,
                                      "N'"sv,
                                      "\"a"sv,
                                      "[a"sv,
                                      "[a]]"sv,
                                      "/* a"sv,
                                      "/* a /* b */"sv,
                                      "/*/"sv}) {
    CAPTURE(text);
    CHECK(errorOf([&] { dialect.translateQuery(text, translation); }) ==
          static_cast<std::int32_t>(ErrorNumber::CommandErrors));
  }
  CHECK(errorOf([&] { dialect.translateQuery("select 1;; ;", translation); }) == 0);
}

TEST_CASE("sqlite dialect: native codes as states") {
  struct Row {
    std::int32_t native;
    std::string message;
    std::string state;
  };
  const Row rows[] = {
      {5, "database is locked (5)", "HYT00"},
      {6, "database table is locked (6)", "HYT00"},
      {517, "database is locked (517)", "HYT00"},  // an extended code
      {19, "UNIQUE constraint failed: t.a (19)", "23000"},
      {1, "no such table: t (1)", "42S02"},
      {1, "near \"frm\": syntax error (1)", "42000"},
      {8, "attempt to write a readonly database (8)", "42501"},
      {18, "string or blob too big (18)", "22001"},
      {26, "file is not a database (26)", "08001"},
      {13, "database or disk is full (13)", "HY000"},
      {-1, "unbound parameters in query", "HY000"},
  };
  for (const auto& row : rows) {
    CAPTURE(row.message);
    CHECK(SqliteDialect().normalized({"HY000", row.native, row.message}).state == row.state);
    CHECK(SqliteDialect().normalized({"IM002", row.native, row.message}).state == "IM002");
  }
}

}  // namespace
}  // namespace velk
