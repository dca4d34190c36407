#include "platform/windows/excel_spreadsheet.h"

#include <algorithm>

#include "platform/windows/message_filter.h"
#include "tests/support/temporary_folder.h"
#include "tests/windows/fake_excel.h"
#include "tests/windows/message_boxes.h"
#include "tests/windows/server_dll.h"

namespace velk {
namespace {

Variant value(const Value& held) {
  return Variant(held);
}

/// Three columns of a sheet that claims four rows.
Variant sheetValues() {
  const auto error = [](int code) {
    VARIANT held{};
    held.vt = VT_ERROR;
    held.scode = static_cast<SCODE>(0x800A0000U + static_cast<unsigned>(code));
    return held;
  };
  SAFEARRAYBOUND bounds[] = {{4, 1}, {3, 1}};
  Variant all;
  VARIANT* const held = all.receive();
  held->vt = VT_ARRAY | VT_VARIANT;
  held->parray = SafeArrayCreate(VT_VARIANT, 2, bounds);
  auto* cells = static_cast<VARIANT*>(held->parray->pvData);
  cells[0] = value("Zoë").release();
  cells[1] = value("007").release();
  cells[4] = Variant(true).release();
  cells[5] = error(2042);
  cells[6] = error(2007);
  cells[8] = value(9876543210.0).release();
  cells[9] = value(39448.0).release();
  cells[10] = value(39448.0).release();
  return all;
}

struct Excel : FakeExcel {
  Excel() {
    const std::pair<const char*, Value> rows[] = {{"Rows.Count", 4},
                                                  {"Columns.Count", 3},
                                                  {"UsedRange.Row", 1},
                                                  {"UsedRange.Column", 1},
                                                  {"Range(C1:C3).NumberFormat", Null{}},
                                                  {"Range(C1:C1).NumberFormat", "0.00E+00"},
                                                  {"Range(C2:C3).NumberFormat", "m/d/yyyy"},
                                                  {"Workbook.Date1904", "False"},
                                                  {"Worksheets(1).Visible", -1},
                                                  {"Worksheets(1).Name", "Old"},
                                                  {"Application.Version", "16.0"},
                                                  {"Application.ReferenceStyle", 1},
                                                  {"Range(B2:B2).Value2", "tis"}};
    for (const auto& [call, answer] : rows) answers[call] = value(answer);
    answers["Range(A1:C4).Value2"] = sheetValues();
  }
};

void read(const std::string& path) {
  const auto spreadsheet = createExcelSpreadsheet();
  REQUIRE(spreadsheet != nullptr);
  const auto sheet = spreadsheet->open(path, ColumnSet().set());
  const int rows = sheet->rowCount();
  CHECK(rows == 3);
  const char* const texts[3][3] = {
      {"Zoë", "TRUE", "9876543210"}, {"007", "#N/A", "01/01/2008"}, {"", "#DIV/0!", "01/01/2008"}};
  for (int row = 1; row <= 3; ++row) {
    for (int column = 1; column <= 3; ++column) {
      CAPTURE(row);
      CAPTURE(column);
      CHECK(sheet->text(row, column) == texts[row - 1][column - 1]);
    }
  }
  CHECK(sheet->text(5, 1).empty());
  CHECK(sheet->text(1, 4).empty());
  const std::string hidden = sheet->hiddenName();
  CHECK(hidden.empty());
}

void write(const std::string& path) {
  const auto spreadsheet = createExcelSpreadsheet();
  REQUIRE(spreadsheet != nullptr);
  const auto sheet = spreadsheet->add();
  sheet->setText(1, 1, "Salesman");
  sheet->setText(1, 2, "replaced");
  sheet->setText(1, 2, "=1+1");
  sheet->setText(3, 1, "007");
  sheet->setBold({1, 1, 1, 8});
  sheet->addListValidation({2, 6, 1000, 6}, {2, 250, 3, 250});
  sheet->setColumnWidth(6, 30);
  sheet->hideColumn(250);
  sheet->setTextColumn(3);
  sheet->autoFit(1, 5);
  sheet->setText(2, 2, "'tis");
  sheet->setText(4096 + 2, 2, std::string(912, 'x'));
  sheet->saveAs(path);
  CHECK(errorOf([&] { sheet->saveAs(path); }) == 91);
}

using Run = void (*)(const std::string& path);

std::string failureOf(Run run, const std::string& path) {
  try {
    run(path);
  } catch (const RuntimeError& error) {
    return error.description();
  }
  return {};
}

int callsOf(Run run, const std::string& path) {
  Excel excel;
  run(path);
  return excel.count;
}

TEST_CASE("the application opens and reads a sheet") {
  const TemporaryFolder folder;
  const std::string path = folder.path("Zoë.xls");
  Excel excel;
  CHECK(errorOf([&] { createExcelSpreadsheet()->open(path, ColumnSet().set()); }) == 53);
  folder.write("Zoë.xls", "old");
  excel.calls.clear();
  read(path);
  CHECK(excel.calls ==
        Texts{"Application.DisplayAlerts=False", "Application.EnableEvents=False",
              "Application.AutomationSecurity=3", "Workbooks.Open(0,True,,?,,True,,,,False)",
              "Rows.Count", "Columns.Count", "UsedRange.Row", "UsedRange.Column",
              "Range(A1:C4).Value2", "Range(C1:C3).NumberFormat", "Range(C1:C1).NumberFormat",
              "Workbook.Date1904", "Range(C2:C3).NumberFormat", "Worksheets(1).Visible",
              "Workbook.Close(False)", "Application.Quit"});
  excel.answers["Worksheets(1).Visible"] = value(0);
  CHECK(createExcelSpreadsheet()->open(path, ColumnSet())->hiddenName() == "Old");
}

TEST_CASE("a sheet with more rows than an .xls file holds is refused, not cut") {
  const TemporaryFolder folder;
  folder.write("Zoë.xls", "old");
  Excel excel;
  excel.answers["Rows.Count"] = value(65537);
  CHECK(errorOf([&] {
          createExcelSpreadsheet()->open(folder.path("Zoë.xls"), ColumnSet().set());
        }) == 321);
  CHECK(excel.calls.back() == "Application.Quit");
}

TEST_CASE("the application writes a sheet") {
  const TemporaryFolder folder;
  Excel excel;
  excel.rejections = {RPC_E_CALL_REJECTED, RPC_E_SERVERCALL_RETRYLATER,
                      static_cast<HRESULT>(0x800AC472)};  // busy for a while
  write(folder.path("Zoë.xls"));
  CHECK(folder.files() == 1);
  CHECK(excel.calls == Texts{"Application.DisplayAlerts=False",
                             "Application.EnableEvents=False",
                             "Application.AutomationSecurity=3",
                             "Range(A1:H1).Bold=True",
                             "Range(F2:F1000).Delete",
                             "Application.ReferenceStyle",
                             "Range(F2:F1000).Add(3,1,1,=$IP$2:$IP$3)",
                             "Range(F1:F1).ColumnWidth=30",
                             "Range(IP1:IP1).Hidden=True",
                             "Range(C1:C1).NumberFormat=@",
                             "Range(A1:A3).NumberFormat=@",
                             "Range(A1:A3).Value2=[Salesman][][007]",
                             "Range(B1:B1).NumberFormat=@",
                             "Range(B1:B1).Value2=[=1+1]",
                             "Range(A1:E1).AutoFit",
                             "Range(B2:B4097).NumberFormat=@",
                             "Range(B2:B4097).Value2=[][][]",
                             "Range(B2:B2).Value2='tis",
                             "Range(B2:B2).Value2",
                             "Range(B2:B2).Value2=''tis",
                             "Range(B4098:B4098).NumberFormat=@",
                             "Range(B4098:B4098).Value2=[]",
                             "Range(B4098:B4098).Value2=xxxxxxxxxxxxxxxx",
                             "Workbook.CheckCompatibility=False",
                             "Application.Version",
                             "ActiveWorkbook.SaveAs(56)",
                             "Workbook.Close(False)",
                             "Application.Quit"});
}

TEST_CASE("an old application, and one that spells ranges otherwise") {
  const TemporaryFolder folder;
  Excel excel;
  excel.unknown = {"AutomationSecurity", "CheckCompatibility"};
  excel.answers["Application.Version"] = value("11.0");
  excel.answers["Application.ReferenceStyle"] = value(-4150);
  excel.answers["Application.ConvertFormula(=$IP$2:$IP$3,1,-4150)"] = value("=R2C250:R3C250");
  write(folder.path("old.xls"));
  for (const char* call :
       {"Range(F2:F1000).Add(3,1,1,=R2C250:R3C250)", "ActiveWorkbook.SaveAs(-4143)"}) {
    CHECK(std::ranges::count(excel.calls, call) == 1);
  }
}

TEST_CASE("whatever fails, the application quits and the file stays") {
  const TemporaryFolder folder;
  const std::string path = folder.path("Zoë.xls");
  for (const auto run : {read, write}) {
    folder.write("Zoë.xls", "old");
    const int all = callsOf(run, path);
    // A failure to quit is not reported, nor one to close a sheet that was read: the work is done.
    const int heard = all - (run == read ? 2 : 1);
    for (int failing = 0; failing < all; ++failing) {
      CAPTURE(failing);
      folder.write("Zoë.xls", "old");
      Excel excel;
      excel.failAt = failing;
      CHECK(failureOf(run, path) == (failing < heard ? "The application says why" : ""));
      CHECK(excel.calls.back() == "Application.Quit");
      CHECK(excel.objectsAtQuit == 1);
      CHECK(excel.isReleased());
      CHECK(folder.files() == 1);
      CHECK(folder.read("Zoë.xls") == (failing < heard || run == read ? "old" : "new"));
    }
  }
}

TEST_CASE("a program that is busy is not the user's affair") {
  ComPtr<IMessageFilter> filter;
  {
    const QuietMessageFilter quiet;
    CoRegisterMessageFilter(nullptr, filter.GetAddressOf());
    CoRegisterMessageFilter(filter.Get(), nullptr);
  }
  REQUIRE(filter);
  CHECK(filter->RetryRejectedCall(nullptr, 0, SERVERCALL_RETRYLATER) == 0xFFFFFFFF);
  CoRegisterMessageFilter(nullptr, filter.ReleaseAndGetAddressOf());
  CHECK_FALSE(filter);
}

TEST_CASE("no application, or one that is half gone") {
  CHECK(createExcelSpreadsheet() == nullptr);
  FakeExcel excel;
  excel.withdrawClass();
  CHECK(createExcelSpreadsheet() == nullptr);
}

TEST_CASE("the component takes the application where there is one") {
  const TemporaryFolder folder;
  folder.write("other.xls", "old");
  Excel excel;
  const ServerDll dll;
  const auto object = dll.makeObject();
  _Connection* connection = nullptr;
  IPictureDisp* icon = nullptr;
  CHECK(object->ImportBankBranchOpening(&connection, &icon) == S_OK);
  pump();
  const Window screen(openScreens().at(0));
  chooseSalesmen(screen);
  MessageBoxes boxes;
  boxes.chooseFile(folder.path("other.xls"));
  for (const char* button : {"&Browse", "&View"}) screen.click(button);
  CHECK(boxes.shown() == Texts{"Import Salesman|Unable to import, Invalid Excel file format|OK"});
  CHECK(excel.calls.back() == "Application.Quit");
  closeScreens();
}

}  // namespace
}  // namespace velk
