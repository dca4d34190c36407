#include "apps/opnimp/report/kinds_report.h"

#include <nlohmann/json.hpp>
#include <string>

#include "apps/opnimp/cli/kinds.h"
#include "apps/opnimp/cli/printable.h"
#include "apps/opnimp/report/json_document.h"
#include "apps/opnimp/report/report_parts.h"

namespace velk {

namespace {

std::string_view formatName(const ImportKind& kind) {
  return kind.format == FileFormat::Workbook ? "an .xls workbook" : "comma-separated text";
}

Json fieldJson(const FieldTitle& field) {
  return {{"title", field.title},
          {"nature", natureName(field.nature)},
          {"mandatory", field.mandatory},
          {"what", field.what},
          {"example", field.example}};
}

Json kindJson(const ImportKind& kind) {
  Json fields = Json::array();
  for (const FieldTitle& field : columnsOf(kind)) fields.push_back(fieldJson(field));
  return {{"kind", kind.name},
          {"what", kind.what},
          {"workbook", kind.format == FileFormat::Workbook},
          {"mostRecords", kind.largestRecordCount},
          {"otherColumns", kind.columns == 0 && kind.format == FileFormat::CommaSeparated},
          {"columns", std::move(fields)}};
}

std::string columnsRule(const ImportKind& kind) {
  if (kind.format == FileFormat::Workbook) return "these columns in this order";
  return kind.columns == 0 ? "columns in any order, and others besides"
                           : "exactly these columns, in any order";
}

void writeKind(const ImportKind& kind, std::ostream& out) {
  out << kind.name << ": " << kind.what << '\n'
      << "  " << formatName(kind) << " with " << columnsRule(kind);
  if (kind.largestRecordCount < masterLargestCount) {
    out << "; a screen takes " << grouped(kind.largestRecordCount) << " records";
  }
  out << "\n\n";
  std::vector<std::vector<std::string>> rows{{"Column", "", "Every record", "What it may be"}};
  for (const FieldTitle& field : columnsOf(kind)) {
    rows.push_back({std::string(field.title), std::string(natureName(field.nature)),
                    field.mandatory ? "yes" : "", std::string(field.what)});
  }
  writeTable(rows, rows.front().size(), out);
  out << "\nHow long a text may be the database's procedures say: `opnimp preview " << kind.name
      << " FILE --database STRING` names what is longer.\n";
}

}  // namespace

void writeKindsText(const std::vector<const ImportKind*>& kinds, std::ostream& out) {
  for (const ImportKind* kind : kinds) {
    if (kind != kinds.front()) out << '\n';
    writeKind(*kind, out);
  }
}

void writeKindsJson(const std::vector<const ImportKind*>& kinds, std::ostream& out) {
  Json documents = Json::array();
  for (const ImportKind* kind : kinds) documents.push_back(kindJson(*kind));
  out << textOf({{"command", "kinds"}, {"kinds", std::move(documents)}}) << '\n';
}

}  // namespace velk
