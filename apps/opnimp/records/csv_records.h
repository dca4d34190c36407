// The records of a comma-separated file, read from its bytes.
//
// Lines end at each carriage return + line feed pair and nowhere else. The first line is the
// header; each further line that is not empty is a record.
#pragma once

#include "apps/opnimp/convert/conversion.h"
#include "apps/opnimp/records/input_records.h"
#include "apps/opnimp/sheets/read_sheets.h"
#include "shared/csv_text.h"

namespace velk {

/// What ends a line of such a file.
inline constexpr std::string_view csvLineEnd = "\r\n";

class CsvRecords final : public InputRecords {
 public:
  explicit CsvRecords(std::string bytes) : CsvRecords(std::move(bytes), {}) {}
  /// The records of a file that is converted: what the screens read, in the lines of the file.
  CsvRecords(std::string fileBytes, Conversion conversion);

  std::string_view bytes() const override { return bytes_; }
  bool isConverted() const { return !fileBytes_.empty(); }
  std::string_view fileBytes() const override { return fileBytes_.empty() ? bytes_ : fileBytes_; }
  const Conversion& conversion() const override { return conversion_; }
  std::string_view header() const { return bytesOf(header_); }
  std::size_t headerLine() const { return header_.line; }
  /// In bytes.
  std::size_t longestLine() const;
  /// Puts a record, by its position, where the file had it.
  void setLine(std::size_t record, std::size_t line) { records_.at(record).line = line; }
  /// The line of the file that a place among the bytes is in.
  std::size_t lineAt(std::size_t offset) const;
  std::string_view bytesOf(std::size_t record) const { return bytesOf(records_[record]); }
  /// True if it is no text at all.
  bool isWorkbook() const { return isWorkbookFile(bytes_); }

  std::size_t count() const override { return records_.size(); }
  /// Lines as an editor counts: the line feeds before it, and one.
  RecordPlace place(std::size_t record) const override { return records_[record]; }
  std::string_view placeWord() const override { return conversion_.isSheet ? "row" : "line"; }
  std::vector<std::string> titles() const override;
  std::vector<std::string> fields(std::size_t record, std::size_t most) const override;
  /// A record's fields as they are written, at most `most`, quotes and the commas inside them kept.
  std::vector<std::string> writtenFields(std::size_t record, std::size_t most) const {
    return split(record, QuotedComma::Keep, most);
  }
  std::string refusal(const ImportKind& kind) const override;
  /// The bytes of header and records, each line ended by carriage return + line feed.
  void write(FileSystem& files, std::string_view path,
             std::span<const std::size_t> records) const override;

 private:
  std::vector<std::string> split(std::size_t record, QuotedComma quotedComma,
                                 std::size_t most) const;
  std::string_view bytesOf(const RecordPlace& place) const {
    return std::string_view(bytes_).substr(place.offset, place.length);
  }

  std::string fileBytes_;  // unless the screens read these
  std::string bytes_;
  Conversion conversion_;  // without its bytes and lines, which are told by the records
  RecordPlace header_;
  std::vector<RecordPlace> records_;
};

}  // namespace velk
