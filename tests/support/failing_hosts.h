// A file of opening balances whose records are known again by what they brought about, and servers
// that end while it is imported.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/support/engines.h"
#include "tests/support/json_value.h"
#include "tests/support/runner.h"
#include "tests/support/watched_connection.h"

namespace velk {

struct FailingHosts : RunnerWorld {
  /// The servers of a folder that scripts/test-servers started.
  explicit FailingHosts(std::string servers);

  std::string servers;
  /// Connection strings of the account that imports, in the order in which they are tried.
  std::vector<std::string> hosts;
  /// Before each call of a procedure, on whichever host; counted from 1.
  std::function<void(int call)> before;

  /// Else both calls of a record may be one message, and look-ups are asked ahead.
  bool oneByOne = true;

  /// As scripts/test-servers takes it.
  void server(const std::string& command, const std::string& engine, const std::string& more = "");
  /// Posts so many records, their references beginning with the name, and looks whether the report
  /// tells the truth of what is at the administrator's connection string by then.
  Json importChecked(const std::string& name, std::size_t records,
                     const std::string& administrator);

 private:
  int calls_ = 0;
};

}  // namespace velk
