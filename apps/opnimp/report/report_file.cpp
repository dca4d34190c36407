#include "apps/opnimp/report/report_file.h"

#include <filesystem>
#include <system_error>

#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/records/file_bytes.h"
#include "platform/native/native_files.h"

namespace velk {

namespace {

std::unique_ptr<OutputFile> openReport(FileSystem& files, const std::string& path) {
  std::error_code error;
  if (std::filesystem::is_regular_file(path, error)) {
    throw UsageError("there is a file " + path +
                     " already, and a report is never replaced; choose another name for --report");
  }
  return files.openReplacement(path);
}

/// Does what may fail for the file at `path`.
template <class Action>
void attempt(const std::string& path, Action action) {
  try {
    action();
  } catch (const RuntimeError& error) {
    throw CannotOpen("the report " + path + " cannot be written: " + fileErrorText(path, error) +
                     ". Check --report, its folder and the space there");
  }
}

}  // namespace

// A replacement that is never closed changes nothing.
void checkReportFile(const std::string& path) {
  NativeFileSystem files;
  attempt(path, [&] { openReport(files, path); });
}

void writeReportFile(const std::string& path, std::string_view page) {
  NativeFileSystem files;
  attempt(path, [&] {
    const auto file = openReport(files, path);
    file->write(page);
    file->close();
  });
}

}  // namespace velk
