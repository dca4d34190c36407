#include "platform/list_view.h"

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

std::shared_ptr<const TextColumn> column(std::string_view cells) {
  return readCsvTable(FileText::copy(cells), [](const RuntimeError&) {}).columns.at(0);
}

TEST_CASE("cells of columns that share texts") {
  HeadlessShell shell;
  Screen screen(shell);
  ListView& list = screen.list;
  const auto cells = column("title\r\n1\r\n\"\"\r\n3");
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
  list.clearColumns();
  CHECK(rowsOf(list) == Texts{"", ""});
}

TEST_CASE("rows and columns that do not exist") {
  HeadlessShell shell;
  Screen screen(shell);
  ListView& list = screen.list;
  list.addRows(2);
  const std::function<void()> routines[] = {
      [&] { list.hasEmptyCell(3); },   [&] { list.cell(0, 0); },
      [&] { list.cell(3, 0); },        [&] { list.cell(1, 3); },
      [&] { list.isBold(3, 0); },      [&] { list.setCell(1, 3, ""); },
      [&] { list.setCell(3, 0, ""); }, [&] { list.setColumn(3, 1, nullptr); },
      [&] { list.title(3); }};
  for (const auto& routine : routines) CHECK(errorOf(routine) == 35600);
}

TEST_CASE("what observers of a list hear") {
  struct Recorder : FormObserver {
    void columnsChanged(ListView&) override { heard.push_back("columns"); }
    void rowsChanged(ListView&, std::size_t first, std::size_t last) override {
      heard.push_back(std::to_string(first) + "-" + std::to_string(last));
    }
    Texts heard;
  } recorder;
  HeadlessShell shell;
  Screen screen(shell);
  screen.setObserver(&recorder);
  ListView& list = screen.list;
  list.addRows(5);
  list.setCell(4, 0, "x");
  list.setColumn(0, 2, nullptr);
  list.clearRows();
  list.setTitle(0, "T");
  list.userColumnWidth(0, 5);
  list.userColumnWidth(3, 5);
  list.userScroll(5);
  list.userSelect(1);
  CHECK(recorder.heard == Texts{"0-5", "4-4", "2-5", "0-0", "columns"});
  CHECK(list.width(0) == 5);
}

}  // namespace
}  // namespace velk
