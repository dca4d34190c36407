// The record reader: a forward-only reader of one comma-separated file, a line at a time, the
// current line already split into fields.
//
// Fields keep their quotes and the commas inside them. The first line is a record like the others.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "shared/Velk_ModOpnImp.h"

namespace velk {

class RecordReader {
 public:
  explicit RecordReader(Velk_ModOpnImp& module) : module_(module) {}
  /// Closes the file opened last; one opened before it stays open with the module.
  ~RecordReader();
  RecordReader(const RecordReader&) = delete;
  RecordReader& operator=(const RecordReader&) = delete;

  const std::string& FileName() const { return fileName_; }
  /// Opens the file; its first line, if any, is the current record at once. A failure is shown in
  /// the platform's message box; the reader keeps its current record, but reading on is error 52.
  void FileName(std::string_view path);

  /// The next line becomes the current record; when there is none, the reader is at its end and the
  /// last record stays current. Nothing when no file was opened.
  void MoveNext();
  /// The field at a zero-based index, or the empty text when no file was opened. Error 9 beyond the
  /// last field, 13 while no line has been read.
  std::string Fields(std::int32_t Index) const;
  bool IsEOF() const { return atEnd_; }
  /// True when a file without a single line was opened: there is no current record then, although
  /// IsEOF says so only after a MoveNext.
  bool isEmpty() const;
  /// The number of fields of the current record, or 0 when no file was opened. Error 13 while no
  /// line has been read.
  std::int32_t Count() const;
  /// Back to the first line.
  void Rewind();
  static std::vector<std::string> CSVSplit(std::string_view Expression);

  /// Checks that every line of `myCSVFile`, from its current record on, has nColumns fields. True:
  /// the reader is at its first line again. False: the user was told the first line that has
  /// not, and the reader is there.
  bool ValidateData(std::int16_t nColumns, RecordReader& myCSVFile) const;

 private:
  const std::vector<std::string>& record() const;

  Velk_ModOpnImp& module_;
  std::string fileName_;
  std::int16_t fileNumber_ = 0;
  std::string currentLine_;
  std::optional<std::vector<std::string>> currentFields_;
  bool opened_ = false;
  bool atEnd_ = false;
};

}  // namespace velk
