// Things about a file that change nothing in how it is imported, but that its owner would want to
// know before, because the result is often not what was meant.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "apps/opnimp/cli/kinds.h"
#include "apps/opnimp/records/csv_records.h"
#include "apps/opnimp/records/field_mapping.h"

namespace velk {

class WorkbookRecords;

struct Warning {
  std::string_view code;  ///< for programs
  std::string_view text;  ///< what it means for the import
  std::size_t count = 0;  ///< how often it was found
  std::vector<std::size_t>
      lines;  ///< the first lines, or rows of a sheet, where; empty: the file as a whole
};

class Warnings {
 public:
  static constexpr std::size_t mostLines = 5;

  /// Counts one more finding of a warning; `line` 0: of the file as a whole.
  void add(std::string_view code, std::string_view text, std::size_t line, std::size_t times = 1);
  std::vector<Warning> take() { return std::move(warnings_); }

 private:
  std::vector<Warning> warnings_;
};

/// All warnings of a file. Without a mapping (View failed) those about values are left out.
std::vector<Warning> findWarnings(const InputRecords& input, const ImportKind& kind,
                                  const std::vector<FieldMapping>& mapping, int currentYear);

// Of comma-separated files, by subject.
void warnOfBytes(const CsvRecords& input, Warnings& warnings);
void warnOfLines(const CsvRecords& input, const ImportKind& kind, Warnings& warnings);
void warnOfValues(const CsvRecords& input, const ImportKind& kind,
                  const std::vector<FieldMapping>& mapping, int currentYear, Warnings& warnings);

// Of salesman workbooks.
void warnOfCells(const WorkbookRecords& input, Warnings& warnings);
void warnOfSalesmen(const WorkbookRecords& input, const std::vector<FieldMapping>& mapping,
                    Warnings& warnings);

}  // namespace velk
