// One run of an import over the rows of a mapping list: which row it stands on, what it says of
// each record, and the calls that post it.
//
// What an import finds goes through here, so that the error log and the observer hear the same.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "mapping/import_observer.h"
#include "shared/Velk_ModOpnImp.h"
#include "ui/list_view.h"
#include "ui/work.h"

namespace velk {

class ImportRun {
 public:
  static constexpr std::size_t mappingRow = 1;
  static constexpr std::size_t firstDataRow = 2;

  /// `mappingList` outlives the object. `repeatsPosting`: who imports a file again posts its
  /// records twice.
  ImportRun(Velk_ModOpnImp& module, const ListView& mappingList, bool repeatsPosting)
      : module_(module), mappingList_(mappingList), repeatsPosting_(repeatsPosting) {}

  /// Null: nobody listens.
  void setObserver(ImportObserver* observer) { observer_ = observer; }
  ImportObserver& observer() const;

  /// How many records of a longer file were in earlier runs. What tells of a stop counts them.
  void setRecordsBefore(std::size_t count) { recordsBefore_ = count; }

  /// The row of the mapping list that the import stands on; 0 outside its loops.
  std::size_t currentRow() const { return currentRow_; }

  /// The first row from firstDataRow to `last` whose cell is empty, leaving it the current row;
  /// empty if there is none.
  std::optional<std::size_t> firstEmptyCell(std::size_t field, std::size_t last);

  /// Runs `record` for each row from firstDataRow to `last` in order, the row being the current
  /// one. An error that leaves it keeps the current row, so that the user can be told where the
  /// import stopped; one that comes later, in the same run, stopped the import at its end.
  template <class Record>
  void forEachRecord(std::size_t last, Record&& record) {
    Form& screen = mappingList_.form();
    const Work work(screen);
    for (std::size_t row = firstDataRow; row <= last; ++row) {
      beginRecord(row);
      record(row);
      observer().recordEnds(posting_);
      screen.workProgressed(row - mappingRow, last - mappingRow);
    }
    currentRow_ = 0;
  }

  /// What is found of the current record; `line` goes to the error log unless it is empty.
  void found(Verdict verdict, const Finding& why, std::string_view line = {});
  /// The run is refused; `message` is what the user was shown. The current row is where.
  void refuse(const Finding& why, std::string_view message) const {
    observer().refused(why, currentRow_, message);
  }
  /// Raises an error that ends the run; `cause` names what it is about in the file. The user is
  /// told both, the log has the error's own description.
  [[noreturn]] void raise(ErrorNumber number, std::string cause);
  /// An error ended the run. Answers what the user has to be told: where, and what that means.
  std::string stop(const RuntimeError& error);
  /// The same as the log has it, with the error's own description.
  std::string stopText(const RuntimeError& error) const { return stopText(error.description()); }
  void end() const { observer().runEnded(); }
  /// The import is over, one way or the other.
  void leaveRows();

  // The database
  /// Calls a procedure that posts the current record; null when it failed.
  std::shared_ptr<Recordset> post(Connection& connection, std::string_view procedure,
                                  std::span<const ProcedureParameter> parameters);
  /// Calls two procedures that post it, the second also when the first failed. Their answers are
  /// dropped.
  void postBoth(Connection& connection, const ProcedureCall& first, const ProcedureCall& second);

  /// Runs a routine under an error trap that logs "(n): " + tag + description. False when it
  /// failed.
  template <class Routine>
  bool trap(std::string_view tag, Routine&& routine) {
    return trapErrors(routine, [&](const RuntimeError& error) {
      observer().errorTrapped(error, module_.logTrapped(tag, error));
    });
  }
  /// The same with one plain line in the log.
  template <class Routine>
  bool trapWithLine(std::string_view line, Routine&& routine) {
    return trapErrors(routine, [&](const RuntimeError& error) {
      module_.WriteErrorLog(line);
      observer().errorTrapped(error, line);
    });
  }
  /// A field without its quotes; one that has only one, and so cannot lose two, is logged and
  /// empty.
  std::string unquoted(std::string_view field);

 private:
  std::string stopText(std::string_view description) const;
  std::shared_ptr<Recordset> post(const std::function<std::shared_ptr<Recordset>()>& call);
  void beginRecord(std::size_t row);

  Velk_ModOpnImp& module_;
  const ListView& mappingList_;
  const bool repeatsPosting_;
  ImportObserver* observer_ = nullptr;
  std::size_t recordsBefore_ = 0;
  std::size_t currentRow_ = 0;
  Posting posting_;
  bool anyBegun_ = false;
  std::string cause_;
};

}  // namespace velk
