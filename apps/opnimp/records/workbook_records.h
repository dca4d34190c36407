// The records of a salesman workbook: its first worksheet, or the one that is named, holds seven
// captions in row 1 and a salesman in each row from 2 to the first one that is blank in columns A
// to E, where they end.
#pragma once

#include <memory>
#include <optional>

#include "apps/opnimp/records/input_records.h"
#include "base/errors.h"
#include "masters/salesman_workbook.h"
#include "platform/spreadsheet.h"

namespace velk {

class WorkbookRecords final : public InputRecords {
 public:
  static constexpr int lastColumn = salesmanColumn::HandHeldDS;

  /// Of a sheet as readWorksheet(). A file of another format is one that is refused.
  explicit WorkbookRecords(std::string bytes, const std::string& sheet = {});

  /// The sheet itself. Raises what reading it raised.
  const WorksheetReader& sheet() const;
  /// Whether a screen cannot read that sheet from the file.
  bool isReadForScreens() const { return isReadForScreens_; }
  /// True when the file is a workbook with the captions that it needs.
  bool hasCaptions() const;
  int rowCount() const { return sheet_ == nullptr ? 0 : sheet_->rowCount(); }
  /// A cell's text, trimmed. Rows and columns count from 1.
  std::string text(int row, int column) const;
  bool isBlank(int row, int from, int to) const;
  CellNature nature(int row, int column) const { return sheet_->nature(row, column); }
  /// As WorksheetReader::hiddenName().
  std::string hiddenName() const { return sheet_ == nullptr ? "" : sheet_->hiddenName(); }
  /// The values of a pick list, as the export wrote them.
  std::vector<std::string> valuesOf(const PickList& list) const;

  std::size_t count() const override { return count_; }
  RecordPlace place(std::size_t record) const override { return {0, 0, rowOf(record)}; }
  std::string_view placeWord() const override { return "row"; }
  std::vector<std::string> titles() const override { return {}; }  // each has its own column
  std::vector<std::string> fields(std::size_t record, std::size_t most) const override;
  std::string refusal(const ImportKind& kind) const override;
  std::vector<std::size_t> unreadRows() const override;
  std::string_view bytes() const override { return bytes_; }
  /// Which sheet it is, if one was named.
  const Conversion& conversion() const override { return conversion_; }
  /// A workbook with the seven columns, all cells being texts, and with the file's pick lists.
  void write(FileSystem& files, std::string_view path,
             std::span<const std::size_t> records) const override;

 private:
  static constexpr int firstRow = 2;
  static std::size_t rowOf(std::size_t record) { return record + firstRow; }
  std::size_t countRecords() const;
  std::string captionFaults() const;

  std::string bytes_;
  Conversion conversion_;
  bool isReadForScreens_;
  std::unique_ptr<WorksheetReader> sheet_;  // null: the file is no workbook
  std::optional<RuntimeError> damage_;      // why it is none
  std::size_t count_ = 0;
};

}  // namespace velk
