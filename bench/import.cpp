// Ours: a click on Import, the file having been viewed and mapped.
//
//   bench_import KIND COMPANY FILE FOLDER [recorded|ahead|traced|journaled]
//
// KIND is one of the runner's: customer-opening, bank-branch or vendor. COMPANY is an embedded
// database, of which a copy is used, or the connection string of a server, where the documents that
// are there are removed, so that the server has nothing to tidy up while it is measured. With
// "recorded", the runner's recorder and report take part; with "ahead" they ask look-ups ahead, on
// a second connection; with "traced", what became of each record is found out, too; with
// "journaled", the run is written to a journal besides, which is there but has no run yet, its
// records being hashed and the file synced as often as the runner does it.

#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>

#include "apps/opnimp/audit/import_report.h"
#include "apps/opnimp/audit/recording_connection.h"
#include "apps/opnimp/cli/kinds.h"
#include "apps/opnimp/run/file_journal.h"
#include "apps/opnimp/run/look_ahead.h"
#include "apps/opnimp/run/run_support.h"
#include "apps/opnimp/run/screen_mapping.h"
#include "bench/company_copy.h"
#include "bench/headless_screen.h"
#include "bench/measurement.h"
#include "opening/company_dates.h"
#include "platform/odbc/odbc_connection.h"

using namespace velk;
using namespace velk::bench;

namespace {

std::size_t count(Connection& connection, std::string_view query) {
  return static_cast<std::size_t>(Velk_ModOpnImp::ValOrZero(connection.Execute(query)->field(0)));
}

// Documents with an account entry, told by the sum that the entries have to come to.
std::size_t postedDocuments(Connection& connection) {
  const auto entries =
      count(connection,
            "SELECT CASE WHEN abs((SELECT sum(OpeningBalance) FROM CustomerOpeningBalance) - "
            "(SELECT sum(Balance) FROM CustomerDebitNote)) < 0.005 THEN 1 ELSE 0 END");
  return entries == 1 ? count(connection, "SELECT count(*) FROM CustomerDebitNote") : 0;
}

std::size_t postedRecords(const ImportKind& kind, Connection& connection) {
  if (kind.opening != nullptr) return postedDocuments(connection);
  return count(connection, kind.type == MasterType::Vendor ? "SELECT count(*) FROM VendorAccount"
                                                           : "SELECT count(*) FROM BranchMaster");
}

/// The database of one import.
class Company {
 public:
  Company(const std::string& company, const std::string& folder) : string_(company) {
    if (company.find('=') == std::string::npos) {
      copy_.emplace(company, folder);
      string_ = embeddedConnectionString(copy_->path());
    }
    connection_ = open({});
    if (copy_) return;
    for (const char* table : {"CustomerDebitNote", "CustomerOpeningBalance"}) {
      connection_->Execute(std::string("TRUNCATE TABLE ") + table);
    }
  }

  const std::shared_ptr<OwnConnection>& connection() const { return connection_; }
  std::shared_ptr<OwnConnection> open(const OdbcOptions& options) const {
    return openOdbc(string_, options);
  }

 private:
  std::optional<CompanyCopy> copy_;
  std::string string_;
  std::shared_ptr<OwnConnection> connection_;
};

enum class Watched { No, Recorded, Ahead, Traced, Journaled };

/// The runner's part in an import.
class Watch {
 public:
  Watch(const ImportKind& kind, const char* file, const char* folder, Watched how)
      : how_(how), ahead_(beside_, kind), path_(std::string(folder) + "/journal") {
    result_.arguments.kind = &kind;
    result_.arguments.file = file;
    result_.input = readInput(result_.arguments);
    std::filesystem::remove(path_);
    if (how_ == Watched::Journaled) {
      openJournal();
      all_->file();
      all_.reset();
    }
  }

  std::shared_ptr<Connection> connection(const Company& company) {
    const std::shared_ptr<OwnConnection> database = company.connection();
    if (how_ == Watched::No) return database;
    if (how_ != Watched::Ahead) return recorded(recorder_, database);
    beside_.connection = company.open({.readOnly = true});
    return recorded(recorder_, answeredAhead(ahead_, database));
  }
  MessageHandler messages(MessageHandler show) {
    return how_ == Watched::No ? show : recorder_.messages(std::move(show));
  }
  ErrorLog* log() { return how_ == Watched::No ? nullptr : &recorder_.log(nullptr); }
  void watch(ImportScreen& screen) {
    if (how_ == Watched::No) return;
    recorder_.watch(screen);
    ahead_.follow(&screen);
    screen.run().setObserver(&report_);
  }

  void begin(const ImportScreen& screen, OwnConnection& database) {
    if (how_ != Watched::Journaled) return;
    openJournal();
    all_->identify(database, "company");
    result_.mapping = readMapping(screen);
    const int year = civilFromDate(surroundings_.clock()).year;
    journal_.emplace(*all_, result_, surroundings_,
                     [&] { return dateOfUndated(firstTransactionDate(database, year)); });
    journal_->begin(result_, report_, recorder_);
  }
  void end() {
    if (how_ < Watched::Traced) return;
    result_.traces = traceRecords(report_, recorder_, {}, result_.input->count());
    if (journal_) journal_->end(result_, {true, std::nullopt, Changes::Stand});
    require(result_.brokeOff.empty(), "the journal could not be written");
  }

 private:
  void openJournal() { all_.emplace(path_, result_.arguments, surroundings_, events_); }

  Watched how_;
  Beside beside_;
  LookAhead ahead_;
  std::string path_;  // of the journal
  Surroundings surroundings_ = realSurroundings();
  Events events_{{std::cout, std::cerr, false}, false};
  RunGate gate_;
  Recorder recorder_{Recorder::Mode::Post, gate_};
  ImportReport report_{false};
  ImportResult result_;
  std::optional<ImportJournal> all_;
  std::optional<FileJournal> journal_;
};

void measure(const ImportKind& kind, const std::string& company, const char* file,
             const char* folder, Watched how) {
  const Company database(company, folder);
  Watch runner(kind, file, folder, how);
  HeadlessScreen screen(folder, runner.connection(database),
                        runner.messages([](const Message& m) { std::cerr << m.prompt << '\n'; }),
                        runner.log(), kind.open);
  if (kind.type) {
    dynamic_cast<Velk_frmBankBranch_OpnImp&>(screen.form())
        .cboType.userChoose(static_cast<int>(*kind.type));
  }
  runner.watch(screen.form());
  screen.browse(file);
  screen.form().cmdview.userClick();

  Stopwatch watch;
  runner.begin(screen.form(), *database.connection());
  const EventResult result = screen.form().cmdImport.userClick();
  runner.end();
  watch.stop();
  require(result == EventResult::Handled, "the import broke off");
  watch.report(postedRecords(kind, *database.connection()));
}

Watched watchedAs(std::string_view name) {
  if (name == "recorded") return Watched::Recorded;
  if (name == "ahead") return Watched::Ahead;
  if (name == "traced") return Watched::Traced;
  require(name == "journaled", "usage: bench_import ... [recorded|ahead|traced|journaled]");
  return Watched::Journaled;
}

}  // namespace

int main(int argc, char** argv) {
  return runMeasurement([&] {
    require(argc == 5 || argc == 6, "usage: bench_import KIND COMPANY FILE FOLDER [HOW]");
    const ImportKind* kind = findKind(argv[1]);
    require(kind != nullptr, "there is no such kind");
    measure(*kind, argv[2], argv[3], argv[4], argc == 6 ? watchedAs(argv[5]) : Watched::No);
  });
}
