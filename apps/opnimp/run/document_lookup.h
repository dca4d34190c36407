// Looks documents up in the database, where its company has a procedure for that: what an import
// calls only posts.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "apps/opnimp/audit/recorder.h"
#include "apps/opnimp/cli/kinds.h"
#include "platform/database.h"

namespace velk {

/// The company's procedure: its parameters are the name of a procedure that posts notes and that
/// one's own, without the narration; it answers how many such documents there are.
inline constexpr std::string_view documentCounter = "opnimp_count_documents";

class DocumentLookup {
 public:
  /// The connection is the run's own, what is asked is no part of the run.
  DocumentLookup(OwnConnection& connection, const ImportKind& kind, RunGate& gate)
      : connection_(connection), kind_(kind), gate_(gate) {}

  /// Whether the call is one that makes a document.
  bool isNote(const RecordedCall& call) const;

  enum class Found { None, Some, NotKnown };
  /// Whether there is a document of this note beside as many that the run itself made before it.
  /// None is certain; Some may be one that was there before the run.
  Found find(const RecordedCall& note, std::size_t madeBefore);

 private:
  std::optional<std::int64_t> count(const RecordedCall& note);

  OwnConnection& connection_;
  const ImportKind& kind_;
  RunGate& gate_;
};

/// For each call that makes a document, how many before it made one that the procedure takes for
/// the same.
std::vector<std::size_t> documentsBefore(std::span<const RecordedCall* const> calls);

}  // namespace velk
