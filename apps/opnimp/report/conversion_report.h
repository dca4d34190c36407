// What a conversion came to, as text and as JSON.
#pragma once

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

#include "apps/opnimp/cli/arguments.h"
#include "apps/opnimp/cli/exit_status.h"
#include "apps/opnimp/convert/conversion.h"

namespace velk {

struct ConvertedFile {
  const Arguments& arguments;
  Conversion conversion;
  std::size_t records = 0;
  std::vector<std::string> commands{};  ///< that may mend what it is refused for

  ExitStatus status() const {
    return conversion.refusal.empty() ? ExitStatus::Posted : ExitStatus::Refused;
  }
};

void writeConversionText(const ConvertedFile& file, std::ostream& out);
void writeConversionJson(const ConvertedFile& file, std::ostream& out);

}  // namespace velk
