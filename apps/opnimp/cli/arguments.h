// The command line.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "apps/opnimp/cli/convert_options.h"
#include "apps/opnimp/cli/kinds.h"

namespace velk {

/// In the place of a file: standard input, or output.
inline constexpr std::string_view standardStream = "-";

/// One --map option: "Field=Column".
struct MapOption {
  std::string field;
  std::string column;  ///< a title of the file, or "#N" for its Nth column
  bool isOfProfile = false;
};

struct Arguments {
  enum class Command {
    Import,
    Preview,
    Convert,
    Export,
    DemoDatabase,
    Runs,
    Report,
    Reversal,
    Rejects,
    CheckDatabase,
    LockHolders,
    Kinds,
    Template,
    Split,
    Version
  };

  std::vector<std::string> words;  ///< all of them, as they were given
  std::string answer;  ///< help or a page to print, no command being run; empty otherwise
  Command command = Command::Import;
  const ImportKind* kind = nullptr;
  std::vector<const ImportKind*> kinds;  ///< to tell of, or check the database for; empty: all
  std::string file;  ///< to write, convert to, split, or make; of eachFile the one to import
  std::vector<std::string> files;            ///< to import, preview or convert
  std::vector<std::string> databases;        ///< the hosts of one; empty: the environment names it
  std::shared_ptr<const std::string> piped;  ///< what came from standard input, if it is a file
  std::vector<MapOption> maps;
  ConvertOptions convert;
  std::optional<std::string> profile;  ///< its name, or the path of its file
  std::optional<std::string> savedProfile;
  /// The options that a profile may have besides --map, as they were given: "--decimal=comma".
  std::vector<std::string> reading;
  std::vector<std::string> accept;  ///< codes of harmful warnings, or "all"
  std::optional<std::string> rejects;
  std::optional<std::string> report;
  std::optional<std::string> metrics;
  std::optional<std::string> appFolder;
  std::size_t fromLine = 1;               ///< of the file, from which on records are imported
  std::optional<int> waitSeconds;         ///< for one statement
  std::optional<int> lockWaitSeconds;     ///< of these, for locks
  std::optional<int> connectWaitSeconds;  ///< for the database to open
  std::optional<std::string> journal;
  std::string session;                              ///< of the database, that waits for a lock
  std::uint64_t run = 0;                            ///< the number of one in the journal
  std::size_t recordsInFile = openingLargestCount;  ///< at most, of those that a file is split into
  bool again = false;                               ///< post what an earlier run posted, too
  bool resume = false;                              ///< go on behind what an earlier run reached
  bool dryRun = false;
  bool allOrNothing = false;
  bool oneByOne = false;  ///< each question to the database by itself
  bool quiet = false;     ///< no report of what went well
  bool verbose = false;   ///< what happens is told on standard error, as people read it
  bool json = false;
  bool jsonLog = false;  ///< on standard error
};

/// What the arguments ask for with each of their files. Of several, each has files of --rejects and
/// --report of its own, with its number before the extension: rejects.2.csv.
std::vector<Arguments> eachFile(const Arguments& arguments);

/// "rejects.2.csv" of "rejects.csv".
std::string numbered(const std::string& path, std::size_t number);

/// The command that the program runs of itself, to learn who holds the locks that a session of
/// OPNIMP_DATABASE waits for. It is in no help.
extern const std::string_view lockHoldersCommand;

}  // namespace velk
