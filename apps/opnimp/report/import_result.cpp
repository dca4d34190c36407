#include "apps/opnimp/report/import_result.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <map>

#include "apps/opnimp/cli/printable.h"
#include "apps/opnimp/records/later_records.h"
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

/// Records of an outcome that no later run reached.
std::size_t countLeft(const Traces& traces, bool (*isOfSort)(Outcome)) {
  return static_cast<std::size_t>(std::ranges::count_if(traces.records, [&](const auto& trace) {
    return isOfSort(trace.outcome) && !isLeftToLater(trace);
  }));
}

/// By run: how many records it reached that this one left.
std::map<std::uint64_t, std::size_t> leftToLater(const Traces& traces) {
  std::map<std::uint64_t, std::size_t> counts;
  for (const RecordTrace& trace : traces.records) {
    if (isLeftToLater(trace)) ++counts[trace.laterRun];
  }
  return counts;
}

/// Records that somebody has to look at once more, the run having reached them all.
std::size_t recordsLeft(const ImportResult& result) {
  return needAttention(result.traces) + result.input->unreadRows().size();
}

/// The same of the runs that it goes on with.
std::size_t leftBefore(const ImportResult& result) {
  std::size_t left = result.setApart.size() + result.leftOut + (result.serverReplaced ? 1 : 0);
  for (const RefusedBefore& refused : result.refusedBefore) left += refused.records;
  return left;
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

void addStepsForEarlierRuns(const ImportResult& result, std::vector<std::string>& steps) {
  if (result.serverReplaced) {
    const std::string run = std::to_string(result.resumes);
    steps.push_back("Look up the last records of run " + run + " in the database (`opnimp report " +
                    run +
                    "` shows them): another server has taken over since, or it was started "
                    "anew, and may lack what was posted last.");
  }
  if (result.leftOut > 0) {
    steps.push_back("Look at the first " + counted(result.leftOut, "record", "records") +
                    " of the file: run " + std::to_string(result.resumes) +
                    " and those that it goes on with reached the file" + fromText(result) +
                    " only. Copy those that are still to be imported to a file of their own.");
  }
  if (!result.setApart.empty()) {
    // No file of such records is written for a run that can have posted nothing.
    const bool written = !result.refused() && !result.isDryRun() && !result.passedOver;
    const std::string command = "`opnimp rejects " + std::to_string(result.resumes) + " FILE`";
    steps.push_back(
        "Look up " + counted(result.setApart.size(), "record", "records") +
        " in the database that the runs before this one left in doubt, and that it "
        "did not post" +
        (written ? where(result, RejectFiles::Check) : "; " + command + " writes them to a file") +
        ".");
  }
  for (const RefusedBefore& refused : result.refusedBefore) {
    const std::string run = std::to_string(refused.run);
    std::string step = "Run " + run + " refused ";
    step.append(counted(refused.records, "record", "records")).append(": `opnimp rejects ");
    steps.push_back(step.append(run).append(" FILE` writes them to a file."));
  }
}

void addStepsForLaterRuns(const ImportResult& result, std::vector<std::string>& steps) {
  for (const auto& [run, count] : leftToLater(result.traces)) {
    const std::string number = std::to_string(run);
    std::string step = "Do not import again what run " + number + " reached since: it took up ";
    step.append(counted(count, "record", "records")).append(" that this run left; `opnimp report ");
    steps.push_back(step.append(number).append("` shows them."));
  }
}

/// Then what to import again is told once, of the call: it knows what became of the others.
bool isOneOfSeveral(const ImportResult& result) {
  return result.arguments.files.size() > 1;
}

enum class FileStays { Same, Corrected };

/// What to import again, `file` being its name in the sentence.
// A corrected file is another one, of which there is no run to resume.
std::string importAgain(const ImportResult& result, std::string_view file, FileStays stays) {
  if (isOneOfSeveral(result)) return "import all files again, as is told of them together";
  const LaterRecords* const part = asPart(*result.input);
  if (result.resumes != 0 && stays == FileStays::Same) {
    return "import the file with --resume again";
  }
  if (part == nullptr) return "import " + std::string(file) + " again";
  return "import the file with --from-line " + std::to_string(part->place(0).line) + " again";
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
  add("Correct", countLeft(result.traces, isRefused), "refused record", "refused records",
      " and import only those again" + where(result, RejectFiles::Rejects) + ".");
  addAllowedDsTypes(result, steps);
  add("Look at", skippedWithWarning(result.traces), "skipped record", "skipped records",
      " with a bill amount of 0 and a warning: nothing was posted for them.");
  add("Look at", account.count(Outcome::SkippedNotANumber), "skipped record", "skipped records",
      " with a bill amount that is not read as a number: nothing was posted for them.");
  add("Look at", account.count(Outcome::PostedAsRead), "record", "records",
      " posted as read and not as written.");
  add("Look at", account.count(Outcome::PostedWithWarning), "record", "records",
      " posted with a warning.");
  add("Import", result.input->unreadRows().size(), "row", "rows",
      " after the first blank row, where reading ended: copy them, under the captions, to a "
      "workbook of their own.");
  const std::size_t notReached =
      countLeft(result.traces, [](Outcome outcome) { return outcome == Outcome::NotReached; });
  if (isOneOfSeveral(result)) {
    add("Leave", notReached, "record", "records",
        " that the run did not reach to what is told of all files together.");
  } else {
    add("Import", notReached, "record", "records",
        " that the run did not reach" + where(result, RejectFiles::Rest) + ".");
  }
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
  return "Nothing stays posted: all of it was taken back. " + correct + " " +
         importAgain(result, "the whole file",
                     refused == 0 ? FileStays::Same : FileStays::Corrected) +
         ".";
}

/// Empty when something was imported, or the records have to be corrected.
std::string stepWithNothingImported(const ImportResult& result) {
  const std::string again = importAgain(result, "the file", FileStays::Same) + ".";
  const std::size_t records = result.input->count();
  if (records > 0 && result.account.count(Outcome::NotReached) == records) {
    return "Nothing was imported. When the cause is mended, or with another --database, " + again;
  }
  const std::string error = commonError(result.traces);
  if (error.empty()) return {};
  return "Nothing was imported: the database refused all that it was asked for one reason (" +
         error + "). When that is mended, or with another --database, " + again;
}

std::string stepAfterRefusal(const ImportResult& result) {
  if (result.refusedWithAnother) {
    return "Nothing was imported. Import it with the others when that file is corrected.";
  }
  if (result.repeats) {
    return "Nothing was imported. Why it was refused says how to go on; with --again everything "
           "named there would be posted a second time.";
  }
  const std::string corrected = importAgain(result, "it", FileStays::Corrected);
  if (result.resumes == 0) {
    return "Nothing was imported. Correct the file or the mapping (`opnimp preview` shows both) "
           "and " +
           corrected + ".";
  }
  return "Nothing was imported. Correct the mapping (`opnimp preview` shows it) and " +
         importAgain(result, "it", FileStays::Same) + "; if the file has to be corrected, " +
         corrected + ".";
}

/// Empty if the records have to be gone through one by one.
std::string stepForAll(const ImportResult& result) {
  if (result.refused()) return stepAfterRefusal(result);
  if (result.isDryRun()) return stepAfterDryRun(result);
  // Whoever took records up knows more than this run.
  if (!leftToLater(result.traces).empty()) return {};
  const std::string step = stepAfterTakingBack(result);
  // Only an account that adds up can prove that nothing was imported.
  return step.empty() && result.account.addsUp() ? stepWithNothingImported(result) : step;
}

}  // namespace

ExitStatus ImportResult::status() const {
  if (refused()) return ExitStatus::Refused;
  const std::size_t before = leftBefore(*this);
  if (passedOver) return before > 0 ? ExitStatus::RecordsLeft : ExitStatus::Posted;
  const bool whole = brokeOff.empty() && account.addsUp();
  // Without the files that it asked for a script cannot go on, even if all else is well.
  const bool hasFiles = rejectsError.empty() && reportError.empty() && profileError.empty();
  if (!whole || !hasFiles) return ExitStatus::BrokeOff;
  return recordsLeft(*this) + before > 0 ? ExitStatus::RecordsLeft : ExitStatus::Posted;
}

std::vector<TitleSuggestion> suggestionsFor(const ImportResult& result) {
  return suggestTitles(result.mapping, result.input->titles());
}

std::string sentenceOf(const TitleSuggestion& suggestion) {
  return "\"" + suggestion.title + (suggestion.isDoubtful ? "\" may be " : "\" looks like ") +
         suggestion.field + " (" + suggestion.reason +
         (suggestion.isDoubtful ? "; so may another column" : "") + "): --map \"" +
         suggestion.option() + "\"";
}

std::string fromText(const ImportResult& result) {
  if (result.leftOut == 0) return {};
  const LaterRecords* const part = asPart(*result.input);
  return " from " + (part == nullptr ? *result.input : part->whole()).where(result.leftOut) + " on";
}

std::string recordsText(const InputRecords& input) {
  const LaterRecords* const part = asPart(input);
  if (part == nullptr) return counted(input.count(), "record", "records");
  return grouped(input.count()) + " of " + counted(part->whole().count(), "record", "records") +
         " of the file, from " + std::string(input.placeWord()) + " " +
         std::to_string(part->place(0).line) + " on";
}

std::string goingOnText(const HostChange& change) {
  return "with record " + std::to_string(change.record) + " at " + change.to + ", since " +
         change.why + (change.found.empty() ? "" : "; " + change.found);
}

std::string nameOf(Outcome outcome, const Arguments& arguments) {
  const std::string name(outcomeName(outcome));
  return arguments.dryRun && isPosted(outcome) ? "would be " + name : name;
}

std::string effectName(std::string_view becomes, const Arguments& arguments) {
  return std::string(becomes) + (arguments.dryRun ? " to post" : " posted");
}

std::vector<std::string> nextSteps(const ImportResult& result) {
  std::vector<std::string> steps;
  addStepsForEarlierRuns(result, steps);
  addStepsForLaterRuns(result, steps);
  if (result.passedOver) {
    if (steps.empty()) steps.emplace_back("Nothing is left to do.");
    return steps;
  }
  if (result.refused()) {
    for (const TitleSuggestion& suggestion : suggestionsFor(result)) {
      steps.push_back(sentenceOf(suggestion));
    }
    for (const std::string& command : result.commands) steps.push_back("`" + command + "`");
  }
  if (const std::string step = stepForAll(result); !step.empty()) {
    steps.push_back(step);
    if (result.isDryRun()) addAllowedDsTypes(result, steps);
    return steps;
  }
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
  if (const LaterRecords* const part = asPart(*result.input); part && result.resumes == 0) {
    steps.push_back("Nothing was done with the " + counted(part->first(), "record", "records") +
                    " of the file before those of this run: --from-line left them out.");
  }
  if (steps.empty()) steps.emplace_back("Nothing is left to do.");
  return steps;
}

}  // namespace velk
