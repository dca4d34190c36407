// The component's public class: the entry points that open the import screens, and, by delegation,
// the reader of comma-separated records.
#pragma once

#include <memory>

#include "shared/record_reader.h"

namespace velk {

class Velk_ClsOpnImp {
 public:
  explicit Velk_ClsOpnImp(Velk_ModOpnImp& module) : module_(module), reader_(module) {}

  // The entry points. Each opens a screen, modeless, and returns; the screen lives until it is
  // closed. The connection and the icon (null: the default one) stay the caller's. An error that
  // the screen's set-up does not trap is raised.

  /// Customer opening balances.
  void ImportCustomerOpening(const std::shared_ptr<Connection>& myConn,
                             const std::shared_ptr<const Picture>& AppIcon);
  /// Vendor opening balances.
  void ImportVendorOpening(const std::shared_ptr<Connection>& myConn,
                           const std::shared_ptr<const Picture>& AppIcon);
  /// Master data: banks and branches, vendors, salesmen.
  void ImportBankBranchOpening(const std::shared_ptr<Connection>& myConn,
                               const std::shared_ptr<const Picture>& AppIcon);

  // The record reader; see RecordReader for what each does.
  const std::string& FileName() const { return reader_.FileName(); }
  void FileName(std::string_view path) { reader_.FileName(path); }
  void MoveNext() { reader_.MoveNext(); }
  std::string Fields(std::int32_t Index) const { return reader_.Fields(Index); }
  bool IsEOF() const { return reader_.IsEOF(); }
  std::int32_t Count() const { return reader_.Count(); }
  void Rewind() { reader_.Rewind(); }
  static std::vector<std::string> CSVSplit(std::string_view Expression) {
    return RecordReader::CSVSplit(Expression);
  }
  bool ValidateData(std::int16_t nColumns, Velk_ClsOpnImp& myCSVFile) const {
    return reader_.ValidateData(nColumns, myCSVFile.reader_);
  }

 private:
  Velk_ModOpnImp& module_;
  RecordReader reader_;
};

}  // namespace velk
