#include "apps/opnimp/records/any_spreadsheet.h"

namespace velk {

namespace {

class SharedReader final : public WorksheetReader {
 public:
  explicit SharedReader(const WorksheetReader& sheet) : sheet_(sheet) {}

  int rowCount() const override { return sheet_.rowCount(); }
  std::string text(int row, int column) const override { return sheet_.text(row, column); }
  CellNature nature(int row, int column) const override { return sheet_.nature(row, column); }
  std::string hiddenName() const override { return sheet_.hiddenName(); }

 private:
  const WorksheetReader& sheet_;
};

}  // namespace

std::unique_ptr<WorksheetReader> AnySpreadsheet::open(std::string_view path,
                                                      const ColumnSet& wanted) {
  if (read_ == nullptr) return xls_.open(path, wanted);
  return std::make_unique<SharedReader>(read_->sheet());
}

}  // namespace velk
