// Where a run goes on that takes up a file at which an earlier one broke off.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "apps/opnimp/journal/run_index.h"

namespace velk {

/// What a run refused that was ended from outside, and so told nobody of.
struct RefusedBefore {
  std::uint64_t run = 0;
  std::size_t records = 0;
};

struct Resumption {
  std::uint64_t run = 0;  ///< the last one that reached a record, or was taken back; 0: none did
  std::string history;    ///< of the server that it posted to last
  std::size_t count = 0;  ///< of the file's records, as that run read it
  std::size_t first = 0;  ///< the first record of the file that any of them reached
  std::size_t next = 0;   ///< the record of the file to go on with
  std::vector<std::size_t> doubtful;  ///< records before it that are partial or unknown
  std::vector<RefusedBefore> refused;
  /// Records before `next` that no run reached, up to the next one that was reached; 0: none.
  std::size_t gapFirst = 0;
  std::size_t gapEnd = 0;
};

/// Of the run of that number and all that it goes on with, the latest first.
std::vector<RefusedBefore> refusedBefore(const RunIndex& index, std::uint64_t number);

/// By record of the run: the last of the later runs of the same file that reached it; 0: none did.
std::vector<std::uint64_t> laterRuns(const RunIndex& index, const RunSummary& run);

/// The first record of the file that the run of that number, or one that it goes on with, reached;
/// its first one if all was taken back.
std::size_t firstReached(const RunIndex& index, std::uint64_t number);

/// By all runs of this file that go on with each other.
Resumption findResumption(const RunIndex& index, const KnownFile& file);

}  // namespace velk
