#include "masters/file_import.h"

#include "base/errors.h"
#include "base/text.h"

namespace velk {

// Every check of the file comes before the first record is posted. The run counts as completed even
// when the message about it cannot be shown: the records are posted.
bool FileImport::run() {
  ImportRun& run = screen_.run();
  bool completed = false;
  try {
    RecordReader reader(screen_.module());
    reader.FileName(screen_.TxtFileName.value());
    if (!hasColumnsOfKind(reader) || !mandatoryFieldsAreMapped()) return false;
    run.forEachRecord(screen_.lastDataRow(), [this](std::size_t row) { postRecord(row); });
    completed = true;
    screen_.module().hostService().messageBox("Import Successfull", styleInformation);
    run.end();
  } catch (const RuntimeError& error) {
    screen_.tellStop(error);
  }
  return completed;
}

// A file that has no line at all by now passes; one that can't be opened any more does not.
bool FileImport::hasColumnsOfKind(const RecordReader& reader) {
  constexpr std::string_view message = "Incorrect file format";
  if (reader.isEmpty()) return true;
  const auto columns = static_cast<std::size_t>(reader.Count());
  if (columns == screen_.fields().size()) return true;
  screen_.desktop().messageBox(message, styleInformation);
  screen_.run().refuse({Reason::WrongColumns, std::nullopt, {}, columns}, message);
  return false;
}

// The test is made on the cell as it is: one with blanks only passes, and the database decides.
bool FileImport::mandatoryFieldsAreMapped() {
  for (std::size_t field = 0; field < screen_.fields().size(); ++field) {
    const TargetField& target = screen_.fields()[field];
    if (!target.needsValues) continue;
    if (!screen_.run().firstEmptyCell(field, screen_.lastDataRow())) continue;
    const std::string message = std::string(target.title) + " is Mandatory.Its not been Mapped";
    screen_.module().hostService().messageBox(message, styleInformation);
    screen_.run().refuse({Reason::ValueMissing, field, {}}, message);
    return false;
  }
  return true;
}

std::string FileImport::value(std::size_t row, std::size_t field) {
  return screen_.run().unquoted(trim(screen_.mappingList.cell(row, field)));
}

void FileImport::call(std::string_view procedure, std::span<const ProcedureParameter> parameters) {
  try {
    result_ = screen_.run().post(screen_.connection(), procedure, parameters);
  } catch (const RuntimeError&) {
    // The procedure's own errors do not come here; the message box about one may fail.
  }
}

}  // namespace velk
