// What the imports of comma-separated files have in common.
#include "base/errors.h"
#include "base/text.h"
#include "masters/Velk_frmBankBranch_OpnImp.h"

namespace velk {

void Velk_frmBankBranch_OpnImp::importFile(PostRecord post) {
  importCompleted_ = false;
  try {
    RecordReader reader(module());
    reader.FileName(TxtFileName.value());
    if (!hasColumnsOfType(reader) || !mandatoryFieldsAreMapped()) return;
    forEachRecord([&](std::size_t row) { (this->*post)(row); });
    importCompleted_ = true;
    module().hostService().messageBox("Import Successfull", styleInformation);
  } catch (const RuntimeError& error) {
    desktop().messageBox(stopText(error), styleCritical);
  }
}

// A file that has no line at all by now passes; one that can't be opened any more does not.
bool Velk_frmBankBranch_OpnImp::hasColumnsOfType(const RecordReader& reader) const {
  if (reader.isEmpty() || static_cast<std::size_t>(reader.Count()) == fields().size()) return true;
  desktop().messageBox("Incorrect file format", styleInformation);
  return false;
}

bool Velk_frmBankBranch_OpnImp::mandatoryFieldsAreMapped() {
  for (std::size_t field = 0; field < fields().size(); ++field) {
    if (!fields()[field].needsValues || !firstEmptyCell(field)) continue;
    module().hostService().messageBox(
        std::string(fields()[field].title) + " is Mandatory.Its not been Mapped", styleInformation);
    return false;
  }
  return true;
}

std::string Velk_frmBankBranch_OpnImp::value(std::size_t row, std::size_t field) {
  return module().UnquoteField(trim(lstCust.cell(row, field)));
}

void Velk_frmBankBranch_OpnImp::call(std::string_view procedure,
                                     std::span<const ProcedureParameter> parameters) {
  try {
    result_ = module().ExecuteProcedure(connection(), procedure, parameters);
  } catch (const RuntimeError&) {
    // Errors are ignored here, intended: the import goes on with its next call.
  }
}

}  // namespace velk
