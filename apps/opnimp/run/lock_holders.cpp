#include "apps/opnimp/run/lock_holders.h"

#include <chrono>
#include <sstream>

#include "apps/opnimp/cli/printable.h"
#include "platform/native/native_lock_holders.h"
#include "platform/native/native_process.h"

namespace velk {

namespace {

constexpr std::chrono::seconds longestAnswer{5};

LockHolders askedOf(const std::string& program, const std::string& database,
                    const std::string& session) {
  LockHolders holders;
  const auto answer = answerOf({program, std::string(lockHoldersCommand), session},
                               "OPNIMP_DATABASE=" + database, longestAnswer);
  if (!answer) return holders;
  std::istringstream lines(answer->output);
  if (answer->status == static_cast<int>(ExitStatus::Refused)) {
    std::getline(lines, holders.missingRight);
  } else if (answer->status != static_cast<int>(ExitStatus::Posted)) {
    return holders;
  }
  for (std::string line; std::getline(lines, line);) holders.names.push_back(line);
  return holders;
}

}  // namespace

LockQuestion lockHoldersQuestion(const DatabaseChoice& database, const std::string& session,
                                 const std::string& program) {
  if (!database.path.empty()) {
    return [path = database.path] { return LockHolders{lockHoldersOf({path, path + "-shm"}), {}}; };
  }
  if (session.empty() || program.empty()) return {};
  return [=, string = database.connectionString] { return askedOf(program, string, session); };
}

ExitStatus tellLockHolders(const Arguments& arguments, const Streams& streams,
                           const Surroundings& surroundings) {
  DatabaseChoice choice = chooseDatabase(arguments.database, surroundings);
  choice.options = openingOptions(arguments);
  const LockHolders holders = openUnlocked(choice, surroundings)->lockHolders(arguments.session);
  if (!holders.missingRight.empty()) streams.out << holders.missingRight << '\n';
  for (const std::string& name : holders.names) streams.out << printable(name) << '\n';
  return holders.missingRight.empty() ? ExitStatus::Posted : ExitStatus::Refused;
}

}  // namespace velk
