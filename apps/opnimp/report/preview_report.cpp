#include "apps/opnimp/report/preview_report.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "apps/opnimp/cli/printable.h"
#include "apps/opnimp/report/json_document.h"
#include "apps/opnimp/report/report_parts.h"

namespace velk {

namespace {

// More columns would only wrap on a terminal; the JSON document has all of them.
constexpr std::size_t mostColumnsShown = 20;
constexpr std::size_t widestCell = 24;

void writeColumnsNotUsed(const PreviewResult& preview, std::ostream& out) {
  std::string unused;
  for (std::size_t column = 0; column < std::min(mostColumnsShown, preview.titles.size());
       ++column) {
    if (std::ranges::count(preview.mapping, column, &FieldMapping::column) > 0) continue;
    unused += (unused.empty() ? "" : ", ") + printable(preview.titles[column]) + " (#" +
              std::to_string(column + 1) + ")";
  }
  if (!unused.empty()) out << "\nColumns not used: " << unused << '\n';
}

void writeRows(const PreviewResult& preview, std::ostream& out) {
  const std::size_t columns = std::min(mostColumnsShown, preview.titles.size());
  std::vector<std::vector<std::string>> table{preview.titles};
  table.insert(table.end(), preview.rows.begin(), preview.rows.end());
  for (std::vector<std::string>& row : table) {
    row.resize(columns);
    // Cut last, because escaping makes a cell longer.
    for (std::string& cell : row) cell = cutTo(printable(cell), widestCell);
  }
  out << '\n';
  writeTable(table, columns, out);
  if (preview.titles.size() > columns) {
    out << "  (the first " << columns << " of " << grouped(preview.titles.size()) << " columns)\n";
  }
}

/// What an import would refuse although the screen shows the file.
void writeAdvice(const PreviewResult& preview, std::ostream& out) {
  // The preview itself was refused, and says why.
  if (preview.mapping.empty()) return;
  const ImportKind& kind = *preview.arguments.kind;
  if (const std::string refusal = preview.input->refusal(kind); !refusal.empty()) {
    out << "\nAn import would be refused: " << printable(refusal) << ".\n";
  }
  const std::string unmapped = unmappedFields(preview.mapping, kind.mandatory);
  if (unmapped.empty()) return;
  out << "\nAn import would be refused: no column is mapped to " << printable(unmapped)
      << ". Rename the column, or use --map \"Field=Column\".\n";
}

}  // namespace

void writePreviewText(const PreviewResult& preview, std::ostream& out) {
  const bool refused = !preview.refusal.empty();
  out << "File: " << printable(preview.arguments.file) << " ("
      << counted(preview.input->count(), "record", "records") << ")\n";
  writeMapping(preview.mapping, out);
  writeColumnsNotUsed(preview, out);
  if (!refused) writeRows(preview, out);
  writeWarnings(preview.warnings, preview.input->placeWord(), out);
  if (refused) out << "\nRefused: " << printable(preview.refusal) << '\n';
  writeAdvice(preview, out);
}

void writePreviewJson(const PreviewResult& preview, std::ostream& out) {
  // A program must not rely on rows of a file that was refused.
  const bool shown = preview.refusal.empty();
  out << textOf({{"command", "preview"},
                 {"kind", preview.arguments.kind->name},
                 {"status", preview.status()},
                 {"file", preview.arguments.file},
                 {"refused", preview.refusal},
                 {"recordCount", preview.input->count()},
                 {"mapping", mappingJson(preview.mapping)},
                 {"warnings", warningsJson(preview.warnings, preview.input->placeWord())},
                 {"columns", shown ? Json(preview.titles) : Json::array()},
                 {"rows", shown ? Json(preview.rows) : Json::array()}})
      << '\n';
}

}  // namespace velk
