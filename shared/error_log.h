// The error log: "Error.log" in the application folder, one line a rejected record or trapped
// error.
#pragma once

#include <string>
#include <string_view>

#include "platform/desktop.h"
#include "shared/numbered_files.h"

namespace velk {

class ErrorLog {
 public:
  virtual ~ErrorLog() = default;
  /// Adds one line. Any RuntimeError may come out; the module's WriteErrorLog keeps it in.
  virtual void append(std::string_view line) = 0;
};

/// The file. It is opened and closed for every line, so that the log is complete on disk after
/// each, even if the import then fails. A last line that a full disk cut off gets its end first.
class FileErrorLog final : public ErrorLog {
 public:
  FileErrorLog(NumberedFiles& files, const Desktop& desktop) : files_(files), desktop_(desktop) {}

  void append(std::string_view line) override;
  std::string path() const;

 private:
  NumberedFiles& files_;
  const Desktop& desktop_;
  bool mayBeTorn_ = true;
};

}  // namespace velk
