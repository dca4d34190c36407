// What a call came to, for a monitoring system: the file of --metrics, in OpenMetrics text
// (docs/monitoring.md).
#pragma once

#include <string>
#include <string_view>

#include "apps/opnimp/cli/exit_status.h"
#include "apps/opnimp/report/files_result.h"

namespace velk {

std::string metricsText(const FilesResult& call, ExitStatus status);

class MetricsFile {
 public:
  /// Makes sure that the file can be written. Raises CannotOpen.
  explicit MetricsFile(std::string path);
  /// Replaces it as a whole, or leaves it as it is. Raises CannotOpen.
  void write(std::string_view text) const;

 private:
  std::string path_;
};

}  // namespace velk
