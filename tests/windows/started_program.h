// The command-line program while it runs.
#pragma once

#include <string>
#include <vector>

#include "platform/windows/handles.h"
#include "tests/support/temporary_folder.h"

namespace velk {

class StartedProgram {
 public:
  /// Writes to "out" and "err" in the folder, and reads the file `input`, if one is named. No
  /// argument ends with a backslash.
  StartedProgram(const TemporaryFolder& folder, const std::vector<std::string>& args,
                 const std::string& input = {});

  bool runs() const { return WaitForSingleObject(process_.get(), 0) == WAIT_TIMEOUT; }
  /// As a console does it: by a thread that calls the handlers.
  void pressCtrlC() const;
  void kill() const { TerminateProcess(process_.get(), 99); }
  /// Waits for it; the status that it ended with.
  int end() const;

 private:
  FileHandle process_;
};

}  // namespace velk
