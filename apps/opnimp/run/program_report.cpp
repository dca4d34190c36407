#include "apps/opnimp/run/program_report.h"

#include <ostream>
#include <utility>

#include "apps/opnimp/cli/program_version.h"
#include "platform/odbc/engines.h"

namespace velk {

ExitStatus tellVersion(const Streams& streams) {
  streams.out << "opnimp " << programVersion << "\ncommit " << programCommit << "\nengines ";
  const char* separator = "";
  for (const std::string_view name : engineNames()) {
    streams.out << std::exchange(separator, ", ") << name;
  }
  streams.out << "\n";
  return ExitStatus::Posted;
}

}  // namespace velk
