// Ours: a click on Import, the file having been viewed and mapped.
//
//   bench_import KIND COMPANY FILE FOLDER [recorded]
//
// KIND is one of the runner's: customer-opening, bank-branch or vendor. With "recorded", the
// runner's recorder and report take part.

#include <memory>
#include <optional>
#include <string_view>

#include "apps/opnimp/audit/import_report.h"
#include "apps/opnimp/audit/recording_connection.h"
#include "apps/opnimp/cli/kinds.h"
#include "bench/company_copy.h"
#include "bench/headless_screen.h"
#include "bench/measurement.h"
#include "platform/odbc/odbc_connection.h"

using namespace velk;
using namespace velk::bench;

namespace {

std::size_t count(Connection& connection, std::string_view query) {
  return static_cast<std::size_t>(Velk_ModOpnImp::ValOrZero(connection.Execute(query)->field(0)));
}

// Documents with an account entry, told by the sum that the entries have to come to.
std::size_t postedDocuments(Connection& connection) {
  const auto entries = count(connection,
                             "SELECT round(sum(OpeningBalance), 2) = (SELECT round(sum(Balance), 2)"
                             " FROM CustomerDebitNote) FROM CustomerOpeningBalance");
  return entries == 1 ? count(connection, "SELECT count(*) FROM CustomerDebitNote") : 0;
}

std::size_t postedRecords(const ImportKind& kind, Connection& connection) {
  if (kind.opening != nullptr) return postedDocuments(connection);
  return count(connection, kind.type == MasterType::Vendor ? "SELECT count(*) FROM VendorAccount"
                                                           : "SELECT count(*) FROM BranchMaster");
}

void measure(const ImportKind& kind, const std::string& company, const char* file,
             const char* folder, bool watched) {
  const CompanyCopy copy(company, folder);
  const std::shared_ptr<Connection> database = openOdbc(embeddedConnectionString(copy.path()));
  MessageHandler messages = [](const Message& m) { std::cerr << m.prompt << '\n'; };
  std::optional<Recorder> recorder;
  if (watched) messages = recorder.emplace(Recorder::Mode::Post).messages(std::move(messages));
  HeadlessScreen screen(folder, watched ? recorded(*recorder, database) : database, messages,
                        watched ? &recorder->log(nullptr) : nullptr, kind.open);
  if (kind.type) {
    dynamic_cast<Velk_frmBankBranch_OpnImp&>(screen.form())
        .cboType.userChoose(static_cast<int>(*kind.type));
  }
  ImportReport report(false);
  if (watched) {
    recorder->watch(screen.form());
    screen.form().run().setObserver(&report);
  }
  screen.browse(file);
  screen.form().cmdview.userClick();

  Stopwatch watch;
  const EventResult result = screen.form().cmdImport.userClick();
  watch.stop();
  require(result == EventResult::Handled, "the import broke off");
  watch.report(postedRecords(kind, *database));
}

}  // namespace

int main(int argc, char** argv) {
  return runMeasurement([&] {
    require(argc == 5 || (argc == 6 && argv[5] == std::string_view("recorded")),
            "usage: bench_import KIND COMPANY FILE FOLDER [recorded]");
    const ImportKind* kind = findKind(argv[1]);
    require(kind != nullptr, "there is no such kind");
    measure(*kind, argv[2], argv[3], argv[4], argc == 6);
  });
}
