// The shared module: error log, file texts, stored procedures, colours and access to the host's
// service object, for all screens of one apartment.
//
// State: the host service reference (created on first use, then kept), the last error number, the
// open file numbers. Whoever makes a module hands it to everything else by reference.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/errors.h"
#include "platform/database.h"
#include "platform/platform.h"
#include "shared/error_log.h"
#include "shared/numbered_files.h"

namespace velk {

class Velk_ModOpnImp {
 public:
  /// `errorLog` takes the place of the file in the application folder; null: the file.
  explicit Velk_ModOpnImp(const Platform& platform, ErrorLog* errorLog = nullptr);
  Velk_ModOpnImp(const Velk_ModOpnImp&) = delete;
  Velk_ModOpnImp& operator=(const Velk_ModOpnImp&) = delete;

  const Platform& platform() const { return platform_; }
  Desktop& desktop() const { return platform_.desktop; }
  NumberedFiles& files() { return files_; }

  // Error log

  /// Appends the text as one line. Every runtime error stays inside: logging never breaks an
  /// import.
  void WriteErrorLog(std::string_view text);
  /// Appends "(" + number + "): " + message.
  void LogError(std::string_view message, std::string_view number);
  /// LogError with the error's number and tag + its description; answers the line.
  std::string logTrapped(std::string_view tag, const RuntimeError& error);
  /// Path of the error log's file, as messages show it.
  std::string errorLogPath() const { return fileLog_.path(); }

  /// Runs a routine under an error trap that logs "(n): " + tag + description. False when it
  /// failed.
  template <class Routine>
  bool trap(std::string_view tag, Routine&& routine) {
    return trapErrors(routine, [&](const RuntimeError& error) { logTrapped(tag, error); });
  }

  // File texts

  /// The whole file as text. When it can't be read: a line in the error log, a message through the
  /// host service, and the empty text.
  std::string ReadFileText(std::string_view path);
  /// The fields of a line; a comma inside quotes is dropped. Errors are logged; what was read so
  /// far is nothing.
  std::vector<std::string> ParseCsvLine(std::string_view line);
  /// The field without its quotes. Errors are logged and give the empty text.
  std::string UnquoteField(std::string_view field);

  // Stored procedures

  /// Runs a procedure with input parameters by position. Null when it failed: the error is logged,
  /// its number kept, and a provider time-out shown to the user.
  std::shared_ptr<Recordset> ExecuteProcedure(Connection& connection, std::string_view name,
                                              std::span<const ProcedureParameter> parameters,
                                              Purpose purpose = Purpose::Post);
  /// The same for a call that is made by other means.
  std::shared_ptr<Recordset> trapCall(const std::function<std::shared_ptr<Recordset>()>& call);
  /// 0 after a procedure that ran, the error's number after one that failed.
  std::int32_t lastErrorNumber() const { return lastErrorNumber_; }
  /// The line that the log got of that error.
  const std::string& lastErrorLine() const { return lastErrorLine_; }
  /// Passes over the closed results before the first open one; the last closed one when none
  /// is open, null for null. Errors end the search silently.
  static std::shared_ptr<Recordset> GetDataRecordset(std::shared_ptr<Recordset> recordset);
  /// 0 for null, else the leading number of the value's text. Error 6 beyond a double's range.
  static double ValOrZero(const Value& value);

  // Colours

  /// Paints the form and its controls by their type names. Both spans are indexed from 0: 0 form
  /// and frames, 1 captions and choices, 2 inputs and lists. Error 9 when an index is missing, 438
  /// for a control without the property.
  static void SetColors(Form& screen, std::span<const Value> back, std::span<const Value> fore);

  // Host service

  /// Created on first use, then kept; the error of a failed creation is raised at every call.
  HostService& hostService();
  /// The second host object, created on first use from the first.
  HostMainWindow& hostMainWindow();

 private:
  Platform platform_;
  NumberedFiles files_;
  FileErrorLog fileLog_;
  ErrorLog* errorLog_;
  std::int32_t lastErrorNumber_ = 0;
  std::string lastErrorLine_;
  std::shared_ptr<HostService> hostService_;
  std::shared_ptr<HostMainWindow> hostMainWindow_;
};

}  // namespace velk
