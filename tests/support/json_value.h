// A JSON document, read by the embedded database.
#pragma once

#include <doctest/doctest.h>

#include <string>
#include <string_view>

#include "base/text.h"
#include "tests/support/scratch_database.h"

namespace velk {

class Json {
 public:
  /// The test fails unless this is one document in valid UTF-8 that gives no key twice.
  explicit Json(std::string_view text) : connection_(scratch_.open()) {
    REQUIRE(toUtf8(toUtf16(text)) == text);
    for (const char c : text) literal_.append(c == '\'' ? 2 : 1, c);
    literal_ = "'" + literal_ + "'";
    REQUIRE_MESSAGE(ask("select json_valid(" + literal_ + ")") == "1", text);
    REQUIRE(ask("select count(*) - count(distinct fullkey) from json_tree(" + literal_ + ")") ==
            "0");
  }

  /// What stands at a path such as "account.addsUp": a text as it is, all else as JSON has it.
  std::string at(const std::string& path) const {
    const std::string place = "(" + literal_ + ", '$." + path + "')";
    return ask("select iif(json_type" + place + " in ('null', 'true', 'false'), json_type" + place +
               ", cast(json_extract" + place + " as text))");
  }

  /// The outcomes of all records, blanks between.
  std::string outcomes() const {
    return ask("select group_concat(json_extract(value, '$.outcome'), ' ') from json_each(" +
               literal_ + ", '$.records')");
  }

 private:
  std::string ask(const std::string& query) const { return velk::ask(*connection_, query); }

  ScratchDatabase scratch_;
  std::shared_ptr<OdbcConnection> connection_;
  std::string literal_;
};

}  // namespace velk
