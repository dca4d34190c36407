// Whether a run would post again what was posted already.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "apps/opnimp/journal/run_index.h"

namespace velk {

/// The records of the file that a run is about to import, hashed as an earlier run has them.
using HashedAs = std::function<std::vector<JournaledRecord>(const RunStart& earlier)>;

/// Why a run of opening balances that is about to begin is refused; empty if it is not. Runs that
/// it resumes do not count, and neither do those of other databases and kinds.
std::string repetitionRefusal(const RunIndex& index, const RunStart& run, const HashedAs& hashedAs,
                              std::string_view placeWord);

/// Any part of a digest is as good as the whole to tell most of them apart.
struct HashOfDigest {
  std::size_t operator()(const Digest& digest) const;
};

/// The files that are imported in one call, by their records.
class FilesOfCall {
 public:
  /// Adds a file. Why it is refused if one of its records is in a file before it, too; empty if it
  /// is not. The text of `file` lives as long.
  std::string add(std::string_view file, const std::vector<JournaledRecord>& records,
                  std::string_view placeWord);

 private:
  struct Place {
    std::string_view file;
    std::size_t line = 0;
  };
  std::unordered_map<Digest, Place, HashOfDigest> records_;  // the first of each
};

}  // namespace velk
