#include "apps/opnimp/run/next_host.h"

#include <vector>

#include "apps/opnimp/run/file_journal.h"

namespace velk {

// A record at which two servers were lost may be what ends them: the next one is spared.
std::size_t NextHost::goOn(const RunEnded& ended) {
  HostChange change;
  change.from = call_.hosts->shown();
  change.why = ended.why;
  try {
    call_.database = call_.hosts->openNext();
    if (call_.beside.connection) call_.openBeside();
    const GoingOn going = findWhere();
    change.to = call_.hosts->shown();
    change.record = going.first + 1;
    change.found = going.found;
    beginAgain(going, change);
    return going.first;
  } catch (const RunEnded& failure) {
    throw RunEnded{ended.why + "; " + failure.why, ended.connectionLost};
  }
}

/// Where the run ends instead, what the server may lack is called posted no more.
GoingOn NextHost::findWhere() {
  const bool hasAll = call_.hosts->hasAllConfirmed();
  std::vector<const Recorder*> earlier;
  for (const EarlierFile& file : call_.earlier) earlier.push_back(file.recorder);
  const Arguments& arguments = run_.result.arguments;
  try {
    DocumentLookup lookup(*call_.database, *arguments.kind, run_.recorder.gate());
    const LostRun lost{
        run_.recorder,     run_.report,    earlier, hasAll, call_.hosts->hasLostEnded(),
        !arguments.resume, arguments.again};
    GoingOn going = findGoingOn(lost, lookup);
    if (wentOnAt_ == going.first) throw RunEnded{"a second host was lost at the same record"};
    wentOnAt_ = going.first;
    return going;
  } catch (const RunEnded&) {
    if (!hasAll) doubtAll();
    throw;
  }
}

void NextHost::doubtAll() {
  run_.recorder.settle(Changes::NotKnown);
  for (const EarlierFile& file : call_.earlier) file.doubtFrom(0);
}

void NextHost::doubtEarlier(const GoingOn& going) {
  for (std::size_t file = 0; file < going.earlier.size(); ++file) {
    if (going.earlier[file]) call_.earlier[file].doubtFrom(*going.earlier[file]);
  }
}

void NextHost::beginAgain(const GoingOn& going, const HostChange& change) {
  const std::size_t begun = run_.report.begun();
  bool isCutOff = false;
  if (going.first < begun) {
    run_.recorder.beginAgain(going.first + ImportScreen::firstDataRow);
    run_.report.beginAgain(going.first);
  } else if (run_.report.isCutOff()) {
    run_.report.cutOff(change.why + "; " + change.found);
    isCutOff = true;
  }
  if (going.doubtful) run_.recorder.doubt(*going.doubtful + ImportScreen::firstDataRow);
  doubtEarlier(going);
  if (run_.journal) {
    beginAgainInJournal(going, begun);
    run_.journal->hostChanges(change);
    run_.journal->serverHas(call_.hosts->history());
  }
  run_.result.hostChanges.push_back(change);
  call_.events.hostChanges(run_.result, change);
  if (going.doubtful) tellOf(*going.doubtful);
  if (isCutOff) tellOf(begun - 1);
}

/// Else a run that resumes this one, if it ends before it comes so far again, would take records
/// for posted that are not there.
void NextHost::beginAgainInJournal(const GoingOn& going, std::size_t begun) {
  if (going.doubtful) {
    run_.journal->beginAgain(*going.doubtful, going.first - 1);
  } else if (going.first < begun) {
    run_.journal->beginAgain(going.first, going.first);
  }
}

/// Of a record that nobody will say the end of any more.
void NextHost::tellOf(std::size_t record) {
  const Traces traces =
      traceRecords(run_.report, run_.recorder, run_.result.warnings, run_.result.input->count());
  call_.events.recordEnds(run_.result, record, traces.records[record]);
}

}  // namespace velk
