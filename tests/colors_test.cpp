#include "tests/support/test_world.h"

namespace velk {
namespace {

std::string colors(const PropertyBag& bag) {
  return std::to_string(bag.number(Property::BackColor)) + "/" +
         std::to_string(bag.number(Property::ForeColor));
}

TEST_CASE("a screen's colours come from the database") {
  const std::string face = "-2147483633/-2147483630";    // button face, button text
  const std::string window = "-2147483643/-2147483640";  // window background, window text
  const Value no = Null();
  const auto text = [](const char* t) { return Value(std::string(t)); };
  const FakeRows mixed{{no, text(" 255 "), 16711680.0}, {no, text("7abc"), text("blue")}};
  const FakeRows zeros{{no, 0, no}, {no, text("0"), text("")}, {no, -2147483633, 0}};
  const struct {
    FakeResults results;
    std::string frame, label, list, log;
  } rows[] = {
      {{FakeRows{}}, face, face, window, ""},
      {{std::nullopt}, face, face, window, ""},
      // As unsigned numbers, and one that is wider than a colour.
      {{FakeRows{{no, 2147483661.0, text("4294967295")}, {no, 4294967297.0, 1}}},
       "-2147483635/-1",
       "-2147483633/1",
       window,
       ""},
      {{FakeRows{{9, 1, 2}}}, "1/2", face, window, ""},
      {{mixed}, "255/16711680", "7/-2147483630", window, ""},
      {{zeros}, face, face, "-2147483633/-2147483640", ""},
      {{FakeRows(7, {no, 5, 6})}, "5/6", "5/6", "5/6", "(9)"},
      {{FakeRows{{no, 1, 2}, {no, 3}}}, "1/2", "3/-2147483630", window, "(3265)"},
      {{}, face, face, window, "(-2147217865)"},  // the query fails
  };
  for (const auto& row : rows) {
    CAPTURE(&row - rows);
    TestWorld world;
    const std::string query = "Select * From ColorSettings";
    world.database->answers[query] = row.results;
    if (row.results.empty()) world.database->fail(query, ErrorNumber::NoSuchTable, "no table");
    const auto screen = world.openCustomerScreen();
    CHECK(colors(screen->FraData) == row.frame);
    CHECK(colors(screen->Label1) == row.label);
    CHECK(colors(screen->lv) == row.list);
    const std::string log = world.log();
    CHECK(log.substr(0, log.find(" - ")) ==
          row.log + (row.log.empty() ? "" : ": Velk_frmCustOpn_OpnImp : InitLoadColors"));
    if (row.log.empty()) CHECK(world.database->closed == (row.results.front() ? 1 : 0));
  }
}

}  // namespace
}  // namespace velk
