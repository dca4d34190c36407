// Imports of sample files and of random ones of every kind call what an independent reading of the
// same files says that they have to.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

#include "apps/opnimp/records/csv_records.h"
#include "tests/support/import_oracle.h"
#include "tests/support/salesmen.h"

namespace velk {
namespace {

constexpr std::string_view documentTitles = ",Customer Name,Reference,Date,Bill Amount,Balance\r\n";
constexpr std::string_view branchTitles = "Bank Code,Bank Name,Branch Code,Branch Name\r\n";
constexpr std::string_view partyTitles =
    "Vendor Code,Vendor Name,Address,Phone,Contact Person,Locality,Sale Type,TNGST,CST,Pan "
    "Number\r\n";

struct Imported {
  SalesmanScreen world_;
  TestWorld& world = world_.world;
  std::shared_ptr<ImportScreen> screen;

  explicit Imported(const ImportKind& kind) {
    world.database->answerRows("select count(*) from Customer where CustomerID=N'X", {{0}});
    world.database->answerRows("select count(*) from Vendors where VendorID='X", {{0}});
    screen = world.open(kind.open);
    if (kind.type) {
      dynamic_cast<Velk_frmBankBranch_OpnImp&>(*screen).cboType.userChoose(
          static_cast<int>(*kind.type));
    }
  }
};

/// The column of the file that each field is mapped to, or none.
std::vector<std::optional<std::size_t>> mappedColumns(const ImportScreen& screen) {
  std::vector<std::optional<std::size_t>> columns(screen.mappingList.columnCount());
  for (std::size_t field = 0; field < columns.size(); ++field) {
    const auto cells = screen.mappingList.columnCells(field);
    for (std::size_t column = 0; cells != nullptr && column < screen.lv.columnCount(); ++column) {
      if (screen.lv.columnCells(column) == cells) columns[field] = column;
    }
  }
  return columns;
}

/// A dry run leaves out what posts, and runs what only asks: these two and no others.
void checkPurposes(const FakeConnection& database) {
  for (const FakeCall& call : database.calls) {
    const bool asks =
        call.text == "sp_Check_DSCaption" || call.text == "Velk_sp_checkDefault_DSTypeValue";
    if (call.kind == CommandType::StoredProcedure) CHECK((call.purpose == Purpose::Ask) == asks);
  }
}

/// Views and imports the file, and compares. Records are read by the runner's own reader.
void checkCsv(const ImportKind& kind, const std::string& bytes) {
  Imported run(kind);
  run.world.view(*run.screen, bytes);
  const auto columns = mappedColumns(*run.screen);
  const CsvRecords input(bytes);
  std::vector<OracleRecord> records;
  for (std::size_t i = 0; i < input.count(); ++i) {
    const auto fields = input.fields(i, 100);
    OracleRecord& record = records.emplace_back(columns.size());
    for (std::size_t field = 0; field < columns.size(); ++field) {
      if (columns[field] && *columns[field] < fields.size()) {
        record[field] = fields[*columns[field]];
      }
    }
  }
  const bool refused = !run.screen->cmdImport.enabled() || !input.refusal(kind).empty();
  run.world.database->calls.clear();
  run.screen->cmdImport.userClick();
  CHECK(run.world.database->procedureCalls() == (refused ? Texts() : expectedCalls(kind, records)));
}

class Random {
 public:
  explicit Random(unsigned seed) : engine_(seed) {}
  std::size_t below(std::size_t limit) { return engine_() % limit; }
  template <class Choices>
  std::string_view pick(const Choices& choices) {
    return choices[below(std::size(choices))];
  }
  /// A text of pieces that matter to the rules.
  std::string text(std::string_view first = {}) {
    constexpr std::string_view pieces[] = {"a", "B7", " ", "'", "\"\"", "X", "-", "\xE9", "0"};
    std::string text(first);
    for (std::size_t count = below(5); count > 0; --count) text += pick(pieces);
    if (below(60) == 0) text += '"';  // the commas behind it are in quotes
    return below(3) == 0 ? "\"" + text + "\"" : text;
  }

 private:
  std::mt19937 engine_;
};

std::string openingRecord(Random& random) {
  constexpr std::string_view dates[] = {"",         "03/03/2008", "31/3/2008 10:00",
                                        "1/4/2008", "2007-12-01", "4 May 07",
                                        "31/03/08", "12/31/2007"};
  constexpr std::string_view amounts[] = {"100", "-5.50", "1e2", "\"1,250.75\"",
                                          "0",   "abc",   " 7",  "+.5"};
  return random.text(random.below(3) == 0 ? "X" : "C1") + ",," + random.text() + "," +
         std::string(random.below(40) == 0 ? "32/13/2008" : random.pick(dates)) + "," +
         std::string(random.pick(amounts)) + "," + std::string(random.pick(amounts));
}

std::string masterRecord(Random& random, std::size_t columns) {
  constexpr std::string_view words[] = {"Outstation", "OUT station", "first sales", "FirstSales"};
  constexpr std::string_view starts[] = {"k", "v", " ", "\"\" a", " \"\" a"};
  std::string line;
  for (std::size_t i = 0; i < columns; ++i) {
    line += i == 0 ? "" : ",";
    line +=
        random.below(4) == 0 ? std::string(random.pick(words)) : random.text(random.pick(starts));
  }
  return line;
}

/// How many files of each kind; more in a long run.
unsigned seeds() {
  const char* const asked = std::getenv("OPNIMP_SEEDS");
  return asked == nullptr ? 40 : static_cast<unsigned>(std::atoi(asked));
}

TEST_CASE("random comma-separated files of every kind") {
  for (unsigned seed = 0; seed < seeds(); ++seed) {
    for (const ImportKind& kind : importKinds()) {
      if (kind.format != FileFormat::CommaSeparated) continue;
      CAPTURE(kind.name);
      CAPTURE(seed);
      Random random(seed);
      const bool customers = kind.name == "customer-opening";
      std::string bytes = kind.opening == nullptr ? std::string()
                          : customers             ? "Customer ID"
                                                  : "Vendor ID";
      bytes += kind.opening != nullptr ? documentTitles
               : kind.columns == 4     ? branchTitles
                                       : partyTitles;
      for (std::size_t count = random.below(12); count > 0; --count) {
        bytes +=
            kind.opening != nullptr ? openingRecord(random) : masterRecord(random, kind.columns);
        bytes += "\r\n";
      }
      checkCsv(kind, bytes);
    }
  }
}

TEST_CASE("random workbooks of salesmen") {
  constexpr std::string_view types[] = {"Retail",  "\"Retail\"", "Old",     "Van",
                                        "\"Van\"", "",           "Re tail", R"("""""Q""""")"};
  constexpr std::string_view handhelds[] = {"YES", "NO", " YES ", "yes", "", "\"NO\""};
  for (unsigned seed = 0; seed < seeds(); ++seed) {
    CAPTURE(seed);
    Random random(seed);
    Texts rows{salesmanTitles};
    for (std::size_t count = 1 + random.below(8); count > 0; --count) {
      std::string row = random.text("S");
      for (int i = 0; i < 4; ++i) row += "|" + random.text();
      rows.push_back(row + "|" + std::string(random.pick(types)) + "|" +
                     std::string(random.pick(handhelds)));
    }
    SalesmanScreen in;
    in.world.database->answerRows(
        "Select Active From DsType_Master Where DSTypeName = 'DSType' and DSTypeValue = '\"\"Q",
        {{1}});
    in.view(rows);
    std::vector<OracleRecord> records;
    for (std::size_t row = 1; row <= in.screen->lv.rowCount(); ++row) {
      OracleRecord& record = records.emplace_back();
      for (std::size_t column = 0; column < 6; ++column) {
        record.emplace_back(in.screen->lv.cell(row, column));
      }
    }
    checkPurposes(*in.world.database);
    in.world.database->calls.clear();
    in.import();
    checkPurposes(*in.world.database);
    CHECK(in.world.database->procedureCalls() == expectedCalls(*findKind("salesman"), records));
  }
}

TEST_CASE("the sample files") {
  std::size_t tried = 0;
  for (const auto& entry : std::filesystem::directory_iterator(OPNIMP_SOURCE_DIR "/samples")) {
    if (entry.path().extension() != ".csv") continue;
    std::ifstream file(entry.path(), std::ios::binary);
    std::ostringstream bytes;
    bytes << file.rdbuf();
    for (const ImportKind& kind : importKinds()) {
      if (kind.format != FileFormat::CommaSeparated || bytes.str().empty()) continue;
      CAPTURE(entry.path().string());
      CAPTURE(kind.name);
      checkCsv(kind, bytes.str());
      ++tried;
    }
  }
  CHECK(tried > 100);
}

}  // namespace
}  // namespace velk
