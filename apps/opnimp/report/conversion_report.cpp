#include "apps/opnimp/report/conversion_report.h"

#include <nlohmann/json.hpp>

#include "apps/opnimp/cli/printable.h"
#include "apps/opnimp/report/json_document.h"
#include "apps/opnimp/report/report_parts.h"

namespace velk {

void writeConversionText(const ConvertedFile& file, std::ostream& out) {
  const Conversion& conversion = file.conversion;
  out << "File:    " << printable(file.arguments.files.front()) << '\n';
  writeAssumed(conversion.assumptions, out);
  if (!conversion.refusal.empty()) {
    out << "\nRefused: " << printable(conversion.refusal) << "; nothing was written.\n";
    writeCommands(file.commands, out);
    return;
  }
  out << "\nWritten: " << printable(file.arguments.file) << " ("
      << counted(file.records, "record", "records") << ")\n";
  if (conversion.commas > 0) {
    out << "Note:    " << counted(conversion.commas, "value has a comma", "values have commas")
        << ", which the screens leave out; the first is in line " << grouped(conversion.firstComma)
        << '\n';
  }
  out << "Next:    `opnimp preview " << file.arguments.kind->name
      << " FILE` shows how the screens read it.\n";
}

void writeConversionJson(const ConvertedFile& file, std::ostream& out) {
  const Conversion& conversion = file.conversion;
  out << textOf({{"command", "convert"},
                 {"kind", file.arguments.kind->name},
                 {"status", file.status()},
                 {"file", file.arguments.files.front()},
                 {"written", orNull(conversion.refusal.empty() ? file.arguments.file : "")},
                 {"refused", orNull(conversion.refusal)},
                 {"assumed", assumedJson(conversion.assumptions)},
                 {"recordCount", file.records},
                 {"commas", conversion.commas}})
      << '\n';
}

}  // namespace velk
