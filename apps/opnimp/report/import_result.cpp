#include "apps/opnimp/report/import_result.h"

#include <algorithm>
#include <array>

#include "apps/opnimp/cli/printable.h"
#include "apps/opnimp/report/reject_files.h"
#include "base/errors.h"

namespace velk {

namespace {

std::size_t refusedRecords(const Account& account) {
  return account.count(Outcome::Rejected) + account.count(Outcome::Failed);
}

std::size_t skippedWithWarning(const Traces& traces) {
  return static_cast<std::size_t>(std::ranges::count_if(traces.records, [](const auto& trace) {
    return trace.outcome == Outcome::Skipped && needsAttention(trace);
  }));
}

std::size_t doubtfulRecords(const Account& account) {
  return account.count(Outcome::Partial) + account.count(Outcome::Unknown);
}

/// Records that somebody has to look at once more, the run having reached them all.
std::size_t recordsLeft(const ImportResult& result) {
  return needAttention(result.traces) + result.input->unreadRows().size();
}

/// A constraint or a text too long: it is the record that has to be corrected.
// So is a code that cannot be pasted into its query, because of a quote in it.
bool isOfRecord(const RecordedCall& call) {
  const CallError& error = *call.error;
  const auto syntax = static_cast<std::int32_t>(ErrorNumber::CommandErrors);
  if (call.kind == CallKind::Query && error.number == syntax) return true;
  return std::ranges::any_of(
      std::array{ErrorNumber::IntegrityViolation, ErrorNumber::DataTruncated,
                 ErrorNumber::WrongArgumentType},
      [&](ErrorNumber number) { return error.number == static_cast<std::int32_t>(number); });
}

/// The one error of the database that all records met for which it was called, none being posted;
/// empty when there is none, or one of their own. Then these need no correction.
std::string commonError(const Traces& traces) {
  std::string common;
  for (const RecordTrace& trace : traces.records) {
    const auto failed = std::ranges::find_if(
        trace.calls, [](const RecordedCall* call) { return call->error.has_value(); });
    const bool called = failed != trace.calls.end();
    if (isSkipped(trace.outcome) || (trace.outcome == Outcome::Rejected && !called)) continue;
    if (!isRefused(trace.outcome) || !called) return {};
    if (isOfRecord(**failed)) return {};
    const std::string& description = (*failed)->error->description;
    if (!common.empty() && description != common) return {};
    common = description;
  }
  return common;
}

// Which of the files of --rejects holds them; without that option, that there is one.
std::string where(const ImportResult& result, RejectFiles::File file) {
  const auto& path = result.arguments.rejects;
  if (!path) return "; --rejects FILE writes them to a file";
  if (!result.rejectsError.empty()) return {};
  return "; they are in " + RejectFiles::touched(*path, result.arguments.kind->format).at(file);
}

void addAllowedDsTypes(const ImportResult& result, std::vector<std::string>& steps) {
  if (result.allowedDsTypes.empty()) return;
  std::string types;
  for (const std::string& type : result.allowedDsTypes) {
    types.append(types.empty() ? "" : ", ").append(type);
  }
  steps.emplace_back("The DS types that salesmen may be given: " + types + ".");
}

void addStepsForRecords(const ImportResult& result, std::vector<std::string>& steps) {
  const Account& account = result.account;
  const auto add = [&](std::string_view verb, std::size_t count, std::string_view one,
                       std::string_view many, const std::string& rest) {
    if (count > 0) steps.push_back(std::string(verb) + " " + counted(count, one, many) + rest);
  };
  // The most dangerous first: a doubtful record that is imported again may be posted twice.
  add("Look up", doubtfulRecords(account), "record", "records",
      " in the database before doing anything else: importing them again could post them twice" +
          where(result, RejectFiles::Check) + ".");
  add("Correct", refusedRecords(account), "refused record", "refused records",
      " and import only those again" + where(result, RejectFiles::Rejects) + ".");
  addAllowedDsTypes(result, steps);
  add("Look at", skippedWithWarning(result.traces), "skipped record", "skipped records",
      " with a balance but a bill amount of 0: nothing was posted for them.");
  add("Look at", account.count(Outcome::SkippedNotANumber), "skipped record", "skipped records",
      " with a bill amount that is not read as a number: nothing was posted for them.");
  add("Look at", account.count(Outcome::PostedAsRead), "record", "records",
      " posted as read and not as written.");
  add("Look at", account.count(Outcome::PostedWithWarning), "record", "records",
      " posted with a warning.");
  add("Import", result.input->unreadRows().size(), "row", "rows",
      " after the first blank row, where reading ended: copy them, under the captions, to a "
      "workbook of their own.");
  add("Import", account.count(Outcome::NotReached), "record", "records",
      " that the run did not reach" + where(result, RejectFiles::Rest) + ".");
}

std::string stepAfterDryRun(const ImportResult& result) {
  // From the worst to the best: each text is true only if those before it do not apply.
  if (!result.brokeOff.empty()) {
    return "Nothing was posted. Mend first what ended the run: an import would end there, too, "
           "with the records before it posted.";
  }
  if (!result.account.addsUp()) {
    return "Nothing was posted. Do not import this file: what the run would have posted is not "
           "what the file says.";
  }
  const std::size_t left = recordsLeft(result);
  if (left > 0) {
    return "Nothing was posted. Look at " + counted(left, "record", "records") +
           " that would not be posted, or not without a word, then try again or import without "
           "--dry-run.";
  }
  return "Nothing was posted. Import without --dry-run; what the database's procedures themselves "
         "would refuse was not tried.";
}

/// Empty unless everything was taken back.
std::string stepAfterTakingBack(const ImportResult& result) {
  const Account& account = result.account;
  const bool nothing = account.notes.count + account.entries.count == 0 &&
                       doubtfulRecords(account) == 0 && account.addsUp();
  if (account.count(Outcome::TakenBack) == 0 || !nothing) return {};
  const std::size_t refused = refusedRecords(account);
  const std::string correct =
      refused == 0 ? "When the cause is mended"
                   : "Correct " + counted(refused, "refused record", "refused records") +
                         " in the file" + where(result, RejectFiles::Rejects) + "; then";
  return "Nothing stays posted: all of it was taken back. " + correct +
         " import the whole file again.";
}

/// Empty when something was imported, or the records have to be corrected.
std::string stepWithNothingImported(const ImportResult& result) {
  const std::size_t records = result.input->count();
  if (records > 0 && result.account.count(Outcome::NotReached) == records) {
    return "Nothing was imported. When the cause is mended, or with another --database, import the "
           "file again.";
  }
  const std::string error = commonError(result.traces);
  if (error.empty()) return {};
  return "Nothing was imported: the database refused all that it was asked for one reason (" +
         error + "). When that is mended, or with another --database, import the file again.";
}

}  // namespace

ExitStatus ImportResult::status() const {
  if (refused()) return ExitStatus::Refused;
  // Without the files of --rejects or --report a script cannot go on, even if all else is well.
  const bool whole = brokeOff.empty() && account.addsUp();
  if (!whole || !rejectsError.empty() || !reportError.empty()) return ExitStatus::BrokeOff;
  return recordsLeft(*this) > 0 ? ExitStatus::RecordsLeft : ExitStatus::Posted;
}

std::string nameOf(Outcome outcome, const ImportResult& result) {
  const std::string name(outcomeName(outcome));
  return result.isDryRun() && isPosted(outcome) ? "would be " + name : name;
}

std::string effectName(std::string_view becomes, const ImportResult& result) {
  return std::string(becomes) + (result.isDryRun() ? " to post" : " posted");
}

std::vector<std::string> nextSteps(const ImportResult& result) {
  if (result.refused()) {
    return {
        "Nothing was imported. Correct the file or the mapping (`opnimp preview` shows both) "
        "and import it again."};
  }
  if (result.isDryRun()) {
    std::vector<std::string> steps{stepAfterDryRun(result)};
    addAllowedDsTypes(result, steps);
    return steps;
  }
  if (const std::string step = stepAfterTakingBack(result); !step.empty()) return {step};
  // Only an account that adds up can prove that nothing was imported.
  if (result.account.addsUp()) {
    if (const std::string step = stepWithNothingImported(result); !step.empty()) return {step};
  }
  std::vector<std::string> steps;
  if (!result.account.addsUp()) {
    steps.emplace_back(
        "Do not rely on this import: compare the database with the file before "
        "importing anything again.");
  }
  addStepsForRecords(result, steps);
  const bool posted = result.account.notes.count + result.account.entries.count > 0 ||
                      doubtfulRecords(result.account) > 0;
  // A salesman who is posted again replaces himself, so that no warning is needed.
  if (!steps.empty() && posted && !result.arguments.kind->replaces) {
    steps.emplace_back("Do not import the whole file again: what is posted would be posted twice.");
  }
  if (steps.empty()) steps.emplace_back("Nothing is left to do.");
  return steps;
}

}  // namespace velk
