#include "apps/opnimp/run/split_command.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <numeric>
#include <string>
#include <system_error>
#include <vector>

#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/cli/printable.h"
#include "apps/opnimp/records/claimed_name.h"
#include "apps/opnimp/records/csv_records.h"
#include "apps/opnimp/records/file_bytes.h"
#include "apps/opnimp/run/run_support.h"
#include "base/text.h"
#include "platform/native/native_files.h"
#include "platform/utf8_path.h"

namespace velk {

namespace {

/// Why the lines are not the records with their titles above them; empty if they are.
std::string faultOf(const CsvRecords& input) {
  const std::string_view bytes = input.bytes();
  if (input.isWorkbook()) return "it is a workbook";
  if (bytes.find('\0') != std::string_view::npos) return "it is in UTF-16, or no text";
  if (lowerAscii(input.header()).starts_with("sep=")) return "its first line names the separator";
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    const bool isPair = bytes.substr(at).starts_with(csvLineEnd);
    if (isPair) {
      ++at;
    } else if (bytes[at] == '\r' || bytes[at] == '\n') {
      return "line " + std::to_string(input.lineAt(at)) + " does not end with CR LF";
    }
  }
  const std::vector<std::string> titles = input.titles();
  const bool hasTitles = std::ranges::count(titles, "") + 1 < std::ssize(titles);
  for (std::size_t record = 0; record < input.count(); ++record) {
    const std::string_view line = input.bytesOf(record);
    const std::string where = input.where(record);
    if (std::ranges::count(line, '"') % 2 != 0) return where + " has a quote that is left open";
    if (!hasTitles && std::ranges::count(line, ',') > 0) return "its first line has no titles";
  }
  return {};
}

/// Writes all parts; none stays if one cannot be written.
void writeParts(const CsvRecords& input, const std::vector<std::string>& paths, std::size_t most,
                std::vector<std::size_t>& sizes) {
  NativeFileSystem files;
  try {
    for (const std::string& path : paths) {
      const std::size_t first = sizes.size() * most;
      std::vector<std::size_t> records(std::min(most, input.count() - first));
      std::iota(records.begin(), records.end(), first);
      const auto write = [&] { input.write(files, path, records); };
      writing("the file", path, "its name", [&] { asNewFile(files, path, write); });
      sizes.push_back(records.size());
    }
  } catch (...) {
    std::error_code ignored;  // it is told why there are none
    for (std::size_t part = 0; part < sizes.size(); ++part) {
      std::filesystem::remove(toPath(paths[part]), ignored);
    }
    throw;
  }
}

}  // namespace

ExitStatus splitFile(const Arguments& arguments, const Streams& streams) {
  const CsvRecords input(readFile(arguments.file));
  if (const std::string fault = faultOf(input); !fault.empty()) {
    throw Refused(arguments.file + " cannot be split as it is: " + fault +
                  ". `opnimp convert KIND FILE NEW-FILE` makes a file of it that can");
  }
  const std::size_t most = arguments.recordsInFile;
  if (input.count() <= most) {
    streams.out << printable(arguments.file) << " has "
                << counted(input.count(), "record", "records") << ": nothing is to be split.\n";
    return ExitStatus::Posted;
  }
  std::vector<std::string> paths;
  for (std::size_t first = 0; first < input.count(); first += most) {
    paths.push_back(numbered(arguments.file, paths.size() + 1));
    requireNoFile(paths.back());
  }
  std::vector<std::size_t> sizes;
  writeParts(input, paths, most, sizes);
  for (std::size_t part = 0; part < paths.size(); ++part) {
    streams.out << "Written:   " << printable(paths[part]) << " ("
                << counted(sizes[part], "record", "records") << ")\n";
  }
  return ExitStatus::Posted;
}

}  // namespace velk
