#include "apps/opnimp/report/report_parts.h"

#include <algorithm>
#include <span>

#include "apps/opnimp/cli/printable.h"

namespace velk {

namespace {

// More than a person reads of one warning; the JSON report lists all.
constexpr std::size_t mostReadingsListed = 200;

void writeReadings(const Warning& warning, std::string_view placeWord, std::ostream& out) {
  for (const Misreading& reading :
       std::span(warning.readings).first(std::min(warning.readings.size(), mostReadingsListed))) {
    out << "      " << placeWord << ' ' << reading.line << ": " << printable(sentenceOf(reading))
        << '\n';
  }
  if (warning.readings.size() <= mostReadingsListed) return;
  out << "      ... and " << grouped(warning.readings.size() - mostReadingsListed) << " more\n";
}

}  // namespace

std::string columnText(const FieldMapping& entry) {
  if (!entry.column) return "not mapped";
  return entry.title + " (#" + std::to_string(*entry.column + 1) + ")";
}

// Only the first lines of a warning are kept: dots say that there are more.
std::string placesOf(const Warning& warning, std::string_view placeWord) {
  std::string text;
  for (const std::size_t line : warning.lines) {
    text.append(text.empty() ? "" : ", ").append(std::to_string(line));
  }
  if (!text.empty()) {
    text = std::string(placeWord) + (warning.lines.size() == 1 ? " " : "s ") + text;
    if (warning.count > warning.lines.size()) text += ", ...";
  }
  for (std::size_t i = 0; i < warning.fields.size(); ++i) {
    text.append(i > 0 ? ", " : text.empty() ? "in " : ", in ").append(warning.fields[i]);
  }
  return text;
}

std::string unreadableText(const Account& account) {
  return "Not in the sums: " + counted(account.unreadable, "record", "records") +
         " with an amount beyond the range of numbers.";
}

void writeTable(const std::vector<std::vector<std::string>>& rows, std::size_t leftColumns,
                std::ostream& out) {
  std::vector<std::string> lines(rows.size());
  for (std::size_t column = 0; column < rows.front().size(); ++column) {
    std::size_t width = 0;
    for (const auto& row : rows) width = std::max(width, textWidth(row[column]));
    for (std::size_t i = 0; i < rows.size(); ++i) {
      const std::string& cell = rows[i][column];
      lines[i] += "  " + (column < leftColumns ? padRight(cell, width) : padLeft(cell, width));
    }
  }
  // Nothing but blanks follows the last text of a row.
  for (const std::string& line : lines) {
    out << std::string_view(line).substr(0, line.find_last_not_of(' ') + 1) << '\n';
  }
}

void writeMore(std::size_t count, std::size_t shown, std::ostream& out) {
  if (count > shown) out << "  ... and " << grouped(count - shown) << " more\n";
}

void writeMapping(const std::vector<FieldMapping>& mapping, std::ostream& out) {
  if (mapping.empty()) return;
  std::size_t width = 0;
  for (const FieldMapping& entry : mapping) width = std::max(width, textWidth(entry.field));
  out << "\nMapping\n";
  for (const FieldMapping& entry : mapping) {
    out << "  " << padRight(printable(entry.field), width) << (entry.column ? " <- " : "    ")
        << printable(columnText(entry)) << '\n';
  }
}

void writeAssumed(const std::vector<Assumption>& assumptions, std::ostream& out) {
  if (assumptions.empty()) return;
  out << "\nAssumed\n";
  for (const Assumption& assumption : assumptions) {
    out << "  " << assumption.what << ": " << printable(assumption.value) << " ("
        << printable(assumption.reason) << ")\n";
    if (!assumption.option.empty()) out << "    else: " << assumption.option << '\n';
  }
}

void writeWarnings(const std::vector<Warning>& warnings, std::string_view placeWord,
                   std::ostream& out) {
  if (warnings.empty()) return;
  out << "\nWarnings\n";
  for (const Warning& warning : warnings) {
    const std::string places = placesOf(warning, placeWord);
    out << "  " << warning.code() << " (" << grouped(warning.count) << (places.empty() ? "" : ", ")
        << printable(places) << ")\n    " << (warning.harmful() ? "HARMFUL: " : "")
        << warning.text() << '\n';
    writeReadings(warning, placeWord, out);
  }
}

void writeCommands(const std::vector<std::string>& commands, std::ostream& out) {
  for (const std::string& command : commands) {
    out << "Next:    `" << printable(command) << "`\n";
  }
}

}  // namespace velk
