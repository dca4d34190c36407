// What the checks of comma-separated files look at: a file, and one record of it after the other.
#pragma once

#include <algorithm>
#include <cstddef>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "apps/opnimp/cli/kinds.h"
#include "apps/opnimp/records/csv_records.h"
#include "apps/opnimp/records/field_mapping.h"
#include "apps/opnimp/warnings/warnings.h"

namespace velk {

struct CheckedFile {
  const CsvRecords& input;
  const ImportKind& kind;
  const std::vector<FieldMapping>& mapping;  ///< empty: the file could not be viewed
  int currentYear = 0;
  bool isUtf8 = false;      ///< with letters beyond ASCII
  std::size_t columns = 0;  ///< titles in the header

  bool isMapped(std::size_t field) const { return mapping.at(field).column.has_value(); }
  /// Whether an import takes a value from the column. The type of a document counts for nothing.
  bool isPosted(std::size_t column) const {
    const std::size_t fields =
        kind.opening == nullptr ? mapping.size() : openingField::balance + std::size_t{1};
    return std::ranges::count(std::span(mapping).first(std::min(fields, mapping.size())), column,
                              &FieldMapping::column) > 0;
  }
};

struct CheckedRecord {
  const CheckedFile& file;
  std::size_t record;
  std::vector<std::string>
      fields;  ///< of the record, quotes and commas kept, none beyond the titles

  CheckedRecord(const CheckedFile& checked, std::size_t position)
      : file(checked),
        record(position),
        fields(checked.input.writtenFields(position, checked.columns)) {}

  std::size_t line() const { return file.input.place(record).line; }
  /// The cell that a field is mapped to, as it stands in the file.
  std::string written(std::size_t field) const {
    return std::string(mappedCell(fields, file.mapping, field));
  }
  /// The same as the import finds it in the mapping list.
  std::string read(std::size_t field) const { return previewCell(written(field)); }

  Misreading misreading(std::size_t field, std::string text, std::string readAs) const {
    return {record, line(), file.mapping.at(field).field, std::move(text), std::move(readAs)};
  }
};

/// A text between quotation marks, or "nothing".
inline std::string quotedOrNothing(const std::string& text) {
  return text.empty() ? "nothing" : "\"" + text + "\"";
}

}  // namespace velk
