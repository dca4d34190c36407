// A run that lost its host goes on at the next one: what was known of its records is made what that
// host has of them.
#pragma once

#include <cstddef>
#include <optional>

#include "apps/opnimp/audit/run_ended.h"
#include "apps/opnimp/run/going_on.h"
#include "apps/opnimp/run/import_call.h"

namespace velk {

class FileJournal;

/// The import of the file in hand, as far as it has come.
struct RunInHand {
  ImportResult& result;
  Recorder& recorder;
  ImportReport& report;
  std::optional<FileJournal>& journal;
};

class NextHost {
 public:
  /// All live as long.
  NextHost(ImportCall& call, const RunInHand& run) : call_(call), run_(run) {}

  /// Opens it, after what ended the run, whose screen is closed. Answers the record to begin with.
  /// Throws RunEnded where the run cannot go on.
  std::size_t goOn(const RunEnded& ended);

 private:
  GoingOn findWhere();
  void beginAgain(const GoingOn& going, const HostChange& change);
  void beginAgainInJournal(const GoingOn& going, std::size_t begun);
  void doubtEarlier(const GoingOn& going);
  void doubtAll();
  void tellOf(std::size_t record);

  ImportCall& call_;
  const RunInHand run_;
  std::optional<std::size_t> wentOnAt_;  // the record, when the last host was lost
};

}  // namespace velk
