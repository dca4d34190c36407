// Files of all kinds on the screens: browsed to, viewed, mapped by hand, imported. The first byte
// chooses the screen. And what reads the same bytes without a screen: the record reader, and the
// runner's records, which have to agree with the preview.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "apps/opnimp/records/csv_records.h"
#include "base/dates.h"
#include "component/Velk_ClsOpnImp.h"
#include "masters/Velk_frmBankBranch_OpnImp.h"
#include "platform/headless/headless_desktop.h"
#include "platform/headless/headless_host_service.h"
#include "platform/spreadsheet/xls/xls_spreadsheet.h"
#include "shared/Velk_ModOpnImp.h"
#include "shared/record_reader.h"
#include "tests/support/fake_database.h"
#include "tests/support/memory_files.h"
#include "ui/headless/headless_shell.h"

using namespace velk;

namespace {

constexpr const char* fileName = "in.csv";

struct World {
  MessageHandler silent = [](const Message&) {};
  MemoryFiles files;
  HeadlessDesktop desktop{"/app", [] { return dateFromCivil({2008, 6, 15}); }, silent};
  HeadlessShell shell;
  std::shared_ptr<FakeConnection> database = std::make_shared<FakeConnection>();
  Velk_ModOpnImp module{
      {.files = files,
       .desktop = desktop,
       .shell = shell,
       .codePage = CodePage::windows1252(),
       .createHostService = [this]() -> std::shared_ptr<HostService> {
         return std::make_shared<HeadlessHostService>(silent);
       },
       .createSpreadsheet = [this] { return std::make_unique<XlsSpreadsheet>(files); }}};

  World() {
    database->answerRows("Select * From ColorSettings", {});
    database->answerRows("SELECT TOP 1 OpeningDate", {{dateFromCivil({2008, 4, 1})}});
    database->answerRows("select count(*)", {{1}});
    database->answerRows("Select Active", {{1}});
    database->answerRows("sp_Check_DSCaption", {{1}});
  }

  std::shared_ptr<ImportScreen> open(unsigned kind) {
    using Entry = decltype(&Velk_ClsOpnImp::ImportCustomerOpening);
    const Entry entries[] = {&Velk_ClsOpnImp::ImportCustomerOpening,
                             &Velk_ClsOpnImp::ImportVendorOpening,
                             &Velk_ClsOpnImp::ImportBankBranchOpening};
    Velk_ClsOpnImp component(module);
    (component.*entries[kind < 2 ? kind : 2])(database, nullptr);
    auto screen = std::dynamic_pointer_cast<ImportScreen>(shell.open().back());
    if (kind >= 2) {
      auto& master = dynamic_cast<Velk_frmBankBranch_OpnImp&>(*screen);
      master.cboType.userChoose(static_cast<int>(kind) - 2);
    }
    return screen;
  }
};

void import(unsigned kind, std::string_view content) {
  World world;
  const auto screen = world.open(kind);
  world.files.contents[fileName] = content;
  for (const auto& choice : {std::optional<std::string>(), std::optional<std::string>(fileName)}) {
    world.desktop.chooseFile(choice);
    screen->CmdBrowse.userClick();
  }
  screen->cmdview.userClick();
  for (std::size_t column = 0; column < 12; ++column) {
    screen->mappingList.userColumnClick(column);  // before a column is chosen, and after
    screen->lv.userColumnClick(column);
    screen->mappingList.userColumnClick(column);
  }
  screen->cmdImport.userClick();
}

void readRecords(std::string_view content) {
  World world;
  world.files.contents[fileName] = content;
  RecordReader reader(world.module);
  reader.FileName(fileName);
  std::size_t lines = 0;
  for (; !reader.IsEOF() && !reader.isEmpty(); reader.MoveNext()) {
    if (++lines > content.size() + 1) std::abort();
    try {
      for (std::int32_t i = 0; i < reader.Count(); ++i) static_cast<void>(reader.Fields(i));
    } catch (const RuntimeError& error) {
      if (!error.is(ErrorNumber::TypeMismatch)) std::abort();  // an empty line has no fields
    }
  }
  reader.Rewind();
  try {
    RecordReader::CSVSplit(content);
    static_cast<void>(reader.ValidateData(3, reader));
  } catch (const RuntimeError&) {
    // Of lines without fields.
  }
  const CsvRecords records{std::string(content)};
  std::vector<std::size_t> all;
  for (std::size_t record = 0; record < records.count(); ++record) {
    if (records.place(record).offset + records.place(record).length > content.size()) std::abort();
    static_cast<void>(records.fields(record, 12));
    static_cast<void>(records.writtenFields(record, 12));
    all.push_back(record);
  }
  for (const ImportKind& kind : importKinds()) static_cast<void>(records.refusal(kind));
  records.write(world.files, "copy.csv", all);
  const CsvRecords copy(world.files.contents["copy.csv"]);
  if (copy.count() != records.count()) std::abort();
}

/// In the place of a kind: the rest of the input many times, for more records than a screen takes.
constexpr std::uint8_t manyTimes = 0xFF;

/// The same for a line longer than any record.
constexpr std::uint8_t longLine = 0xFA;

std::string repeated(std::string_view content) {
  constexpr std::size_t longest = 6;  // more would only take time
  std::string text;
  for (int i = 0; i < 33'000; ++i) text += content.substr(0, longest);
  return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  constexpr unsigned kinds = 5;
  const std::string_view content(reinterpret_cast<const char*>(data) + 1, size - 1);
  import(data[0] % kinds, data[0] == manyTimes  ? repeated(content)
                          : data[0] == longLine ? std::string(maxLineLength + 1, 'x')
                                                : std::string(content));
  readRecords(content);
  return 0;
}
