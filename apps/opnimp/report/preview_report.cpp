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

void writeColumnsNotUsed(const std::vector<FieldMapping>& mapping, const PreviewTable& table,
                         std::ostream& out) {
  std::string unused;
  for (std::size_t column = 0; column < std::min(mostColumnsShown, table.titles.size()); ++column) {
    if (std::ranges::count(mapping, column, &FieldMapping::column) > 0) continue;
    unused += (unused.empty() ? "" : ", ") + printable(table.titles[column]) + " (#" +
              std::to_string(column + 1) + ")";
  }
  if (!unused.empty()) out << "\nColumns not used: " << unused << '\n';
}

void writeRows(const PreviewTable& table, std::ostream& out) {
  const std::size_t columns = std::min(mostColumnsShown, table.titles.size());
  std::vector<std::vector<std::string>> rows{table.titles};
  rows.insert(rows.end(), table.rows.begin(), table.rows.end());
  for (std::vector<std::string>& row : rows) {
    row.resize(columns);
    // Cut last, because escaping makes a cell longer.
    for (std::string& cell : row) cell = cutTo(printable(cell), widestCell);
  }
  out << '\n';
  writeTable(rows, columns, out);
  if (table.titles.size() > columns) {
    out << "  (the first " << columns << " of " << grouped(table.titles.size()) << " columns)\n";
  }
}

Json longValuesJson(const FilePreview& file) {
  Json list = Json::array();
  for (const LongValue& value : file.longValues) {
    const InputRecords& input = *file.result.input;
    list.push_back({{"record", value.record + 1},
                    {std::string(input.placeWord()), input.place(value.record).line},
                    {"procedure", value.procedure},
                    {"parameter", value.parameter},
                    {"takes", value.takes},
                    {"length", value.length}});
  }
  return list;
}

/// Whether the screen shows the file, and with the mapping that was asked for.
bool isShown(const ImportResult& result) {
  return !result.mapping.empty();
}

void writeForesight(const ImportResult& result, std::ostream& out) {
  if (result.refused()) {
    out << (isShown(result) ? "\nAn import would be refused: " : "\nRefused: ")
        << printable(result.refusal) << '\n';
    writeCommands(result.commands, out);
    return;
  }
  out << "\nAs far as the file tells, an import would end with status "
      << static_cast<int>(result.status());
  if (!result.brokeOff.empty()) out << " and break off: " << printable(result.brokeOff);
  const std::size_t left = needAttention(result.traces);
  if (left > 0) out << "; " << counted(left, "record needs", "records need") << " attention";
  out << ".\n";
}

void writeText(const FilePreview& file, std::ostream& out) {
  const ImportResult& result = file.result;
  out << "File: " << printable(result.arguments.file) << " ("
      << counted(result.input->count(), "record", "records") << ")\n";
  writeAssumed(result.input->conversion().assumptions, out);
  writeMapping(result.mapping, out);
  writeColumnsNotUsed(result.mapping, file.table, out);
  for (const TitleSuggestion& suggestion : suggestionsFor(result)) {
    out << "  " << printable(sentenceOf(suggestion)) << '\n';
  }
  if (isShown(result)) writeRows(file.table, out);
  writeWarnings(result.warnings, result.input->placeWord(), out);
  writeForesight(result, out);
}

Json documentOf(const FilePreview& file) {
  const ImportResult& result = file.result;
  // A program must not rely on rows of a file that was refused.
  const bool shown = isShown(result);
  return {{"command", "preview"},
          {"kind", result.arguments.kind->name},
          {"status", result.status()},
          {"file", result.arguments.file},
          {"refused", shown ? "" : result.refusal},
          {"wouldRefuse", result.refused()},
          {"refusal", orNull(result.refusal)},
          {"recordCount", result.input->count()},
          {"needAttention", needAttention(result.traces)},
          {"assumed", assumedJson(result.input->conversion().assumptions)},
          {"mapping", mappingJson(result.mapping)},
          {"suggestions", suggestionsJson(suggestionsFor(result))},
          {"warnings", warningsJson(result.warnings, result.input->placeWord())},
          {"longValues", longValuesJson(file)},
          {"columns", shown ? Json(file.table.titles) : Json::array()},
          {"rows", shown ? Json(file.table.rows) : Json::array()}};
}

}  // namespace

void writePreviewText(const std::vector<FilePreview>& files, ExitStatus status, std::ostream& out) {
  for (const FilePreview& file : files) {
    writeText(file, out);
    if (files.size() > 1) out << '\n';
  }
  if (files.size() == 1) return;
  out << "As far as the files tell, an import of all " << files.size() << " would end with status "
      << static_cast<int>(status) << ".\n";
}

void writePreviewJson(const std::vector<FilePreview>& files, ExitStatus status, std::ostream& out) {
  if (files.size() == 1) {
    out << textOf(documentOf(files.front())) << '\n';
    return;
  }
  Json documents = Json::array();
  for (const FilePreview& file : files) documents.push_back(documentOf(file));
  out << textOf({{"command", "preview"},
                 {"kind", files.front().result.arguments.kind->name},
                 {"status", status},
                 {"wouldRefuse", status == ExitStatus::Refused},
                 {"files", std::move(documents)}})
      << '\n';
}

}  // namespace velk
