#include "apps/opnimp/report/report_file.h"

#include "apps/opnimp/records/file_bytes.h"
#include "platform/native/native_files.h"

namespace velk {

namespace {

std::unique_ptr<OutputFile> openReport(FileSystem& files, const std::string& path) {
  requireNoFile(path);
  return files.openReplacement(path);
}

template <class Action>
void writingReport(const std::string& path, Action action) {
  writing("the report", path, "--report", action);
}

}  // namespace

// A replacement that is never closed changes nothing.
void checkReportFile(const std::string& path) {
  NativeFileSystem files;
  writingReport(path, [&] { openReport(files, path); });
}

void writeReportFile(const std::string& path, std::string_view page) {
  NativeFileSystem files;
  writingReport(path, [&] {
    const auto file = openReport(files, path);
    file->write(page);
    file->close();
  });
}

}  // namespace velk
