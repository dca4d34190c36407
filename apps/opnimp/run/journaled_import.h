// An earlier import, as its journal tells of it.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "apps/opnimp/report/import_result.h"
#include "apps/opnimp/run/journal_choice.h"

namespace velk {

/// The result of a run as it was when it ended, and everything that it points to. One that did not
/// end by itself has broken off; a record in doubt is unknown.
class JournaledImport {
 public:
  /// Raises UsageError if there is no such run, CannotOpen if it cannot be read, or is going on.
  JournaledImport(const OpenJournal& journal, std::uint64_t number);
  JournaledImport(const JournaledImport&) = delete;
  JournaledImport& operator=(const JournaledImport&) = delete;

  const RunStart& start() const { return run_.start; }
  const ImportKind& kind() const { return *result_.arguments.kind; }
  ImportResult& result() { return result_; }

 private:
  void requireAgreement(bool agrees) const;
  void settle(const RunSummary& summary);
  void trace(const RunSummary& summary, std::span<const std::uint64_t> later);

  JournaledRun run_;
  ImportResult result_;
};

}  // namespace velk
