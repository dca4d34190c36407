#include "ui/list_view.h"

#include "mapping/csv_table.h"
#include "tests/support/test_world.h"

namespace velk {
namespace {

struct Screen : Form {
  explicit Screen(FormShell& shell) : Form(shell, "Screen", "", {}) {
    for (const char* title : {"A", "B", "C"}) list.addColumn(title);
  }
  void eventFailed(const RuntimeError&) noexcept override {}
  ListView list{*this, nullptr, "list", {}};
};

TEST_CASE("cells of columns that share texts, rows and columns that do not exist") {
  HeadlessShell shell;
  Screen screen(shell);
  ListView& list = screen.list;
  const auto cells = readCsvTable("title\r\n1\r\n\"\"\r\n3", {}).columns.at(0);
  list.addRows(3);
  list.setCell(1, 1, "Not Yet", true);
  list.setCell(2, 1, "gone", true);
  list.setColumn(1, 2, cells);
  list.setColumn(0, 1, cells);
  CHECK(rowsOf(list) == Texts{"1|Not Yet*|", "|1|", "3||"});
  list.addRows(2);
  CHECK(rowsOf(list) == Texts{"1|Not Yet*|", "|1|", "3||", "|3|", "||"});
  CHECK(cells.use_count() == 3);  // shared, not copied
  list.setCell(1, 1, "plain");
  list.setColumn(0, 1, nullptr);
  CHECK(rowText(list, 1) == "|plain|");
  list.clearRows();
  list.addRows(2);
  CHECK(rowsOf(list) == Texts{"||", "||"});
  const std::function<void()> routines[] = {
      [&] { list.hasEmptyCell(3); },   [&] { list.cell(0, 0); },
      [&] { list.cell(3, 0); },        [&] { list.cell(1, 3); },
      [&] { list.isBold(3, 0); },      [&] { list.setCell(1, 3, ""); },
      [&] { list.setCell(3, 0, ""); }, [&] { list.setColumn(3, 1, nullptr); },
      [&] { list.title(3); }};
  for (const auto& routine : routines) CHECK(errorOf(routine) == 35600);
  list.clearColumns();
  CHECK(rowsOf(list) == Texts{"", ""});
}

}  // namespace
}  // namespace velk
