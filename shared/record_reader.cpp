#include "shared/record_reader.h"

#include "shared/csv_text.h"

namespace velk {

RecordReader::~RecordReader() {
  module_.files().close(fileNumber_);
}

void RecordReader::FileName(std::string_view path) {
  try {
    fileName_ = path;
    const std::int16_t number = module_.files().freeFile();
    fileNumber_ = 0;  // so that a failed open does not leave a number that another file may get
    module_.files().openForInput(number, path);
    fileNumber_ = number;
    opened_ = true;
    // In an empty file MoveNext would set the end, which hosts see only after their own MoveNext.
    if (!module_.files().atEnd(fileNumber_)) MoveNext();
  } catch (const RuntimeError& error) {
    // The error's number is passed as the style. It decides icon and buttons: users know each error
    // by the look of its box.
    module_.desktop().messageBox(error.description(), error.number());
  }
}

// At the end the last record stays current: hosts read its fields after the loop.
void RecordReader::MoveNext() {
  if (!opened_) return;
  if (module_.files().atEnd(fileNumber_)) {
    atEnd_ = true;
    return;
  }
  currentLine_ = module_.files().lineInput(fileNumber_);
  currentFields_ = CSVSplit(currentLine_);
}

// A first line that could not be read is still ahead.
bool RecordReader::isEmpty() const {
  return opened_ && !currentFields_ && module_.files().atEnd(fileNumber_);
}

const std::vector<std::string>& RecordReader::record() const {
  if (!currentFields_) throw RuntimeError(ErrorNumber::TypeMismatch);
  return *currentFields_;
}

std::string RecordReader::Fields(std::int32_t Index) const {
  if (!opened_) return {};
  const auto& fields = record();
  if (Index < 0 || static_cast<std::size_t>(Index) >= fields.size()) {
    throw RuntimeError(ErrorNumber::SubscriptOutOfRange);
  }
  return fields[static_cast<std::size_t>(Index)];
}

std::int32_t RecordReader::Count() const {
  return opened_ ? static_cast<std::int32_t>(record().size()) : 0;
}

void RecordReader::Rewind() {
  if (!opened_) return;
  module_.files().rewind(fileNumber_);
  atEnd_ = false;
  if (!module_.files().atEnd(fileNumber_)) MoveNext();
}

std::vector<std::string> RecordReader::CSVSplit(std::string_view Expression) {
  return splitLine(Expression, QuotedComma::Keep);
}

// From the current record on: the caller may have read some of the file.
bool RecordReader::ValidateData(std::int16_t nColumns, RecordReader& myCSVFile) const {
  std::int32_t line = 0;
  while (!myCSVFile.IsEOF()) {
    ++line;
    if (myCSVFile.Count() != nColumns) {
      // No blank between the line number and "starting with": hosts look for this text.
      module_.desktop().messageBox(
          "'" + myCSVFile.FileName() + "'\r\n" +
              "File does not contain expected number of columns (" + std::to_string(nColumns) +
              ") in line number " + std::to_string(line) + "starting with " + myCSVFile.Fields(0) +
              ". Please make sure the line has exactly " + std::to_string(nColumns - 1) +
              " commas and try again.",
          styleExclamation, "Import");
      return false;
    }
    if (!myCSVFile.opened_) break;  // no file, no columns, and never an end
    myCSVFile.MoveNext();
  }
  myCSVFile.Rewind();
  return true;
}

}  // namespace velk
