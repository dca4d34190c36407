// What the imports of master data from comma-separated files have in common: the file has the
// columns of its kind, no mandatory value is missing, then each record is posted.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "mapping/import_screen.h"
#include "shared/record_reader.h"

namespace velk {

class FileImport {
 public:
  FileImport(const FileImport&) = delete;
  FileImport& operator=(const FileImport&) = delete;

  /// Imports the file that the screen names, from its mapping list. True when the run reached its
  /// end; else the user knows why.
  bool run();

 protected:
  explicit FileImport(ImportScreen& screen) : screen_(screen) {}
  virtual ~FileImport() = default;

  virtual void postRecord(std::size_t row) = 0;
  /// A cell's text as imports read it: trimmed, then unquoted.
  std::string value(std::size_t row, std::size_t field);
  /// Calls a procedure that posts. Its errors are logged and dropped: the import goes on with the
  /// next call, and the user is told of success, as users of these imports are used to.
  void call(std::string_view procedure, std::span<const ProcedureParameter> parameters);

  ImportScreen& screen_;

 private:
  bool hasColumnsOfKind(const RecordReader& reader);
  bool mandatoryFieldsAreMapped();

  std::shared_ptr<Recordset> result_;  // of the last call: it stays open until the next one
};

}  // namespace velk
