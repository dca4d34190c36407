// Stored procedures: running one, finding its result, reading a number out of it.
#include <utility>

#include "base/numbers.h"
#include "shared/Velk_ModOpnImp.h"

namespace velk {

std::shared_ptr<Recordset> Velk_ModOpnImp::ExecuteProcedure(
    Connection& connection, std::string_view name, std::span<const ProcedureParameter> parameters,
    Purpose purpose) {
  return trapCall([&] { return runProcedure(connection, {name, parameters}, purpose); });
}

// The error's number is kept because callers that ignore errors still ask for it afterwards. Only a
// time-out is shown: it is the one error that passes when the user waits.
std::shared_ptr<Recordset> Velk_ModOpnImp::trapCall(
    const std::function<std::shared_ptr<Recordset>()>& call) {
  try {
    auto recordset = call();
    lastErrorNumber_ = 0;
    return recordset;
  } catch (const RuntimeError& error) {
    lastErrorNumber_ = error.number();
    lastErrorLine_ = logTrapped("", error);
    if (error.is(ErrorNumber::ProviderTimeout)) {
      desktop().messageBox("Database is busy, cannot establish connection", styleCritical);
    }
    return nullptr;
  }
}

// Statements of a procedure that only count rows leave closed results before the one with the data.
std::shared_ptr<Recordset> Velk_ModOpnImp::GetDataRecordset(std::shared_ptr<Recordset> recordset) {
  try {
    while (recordset != nullptr && recordset->State() == stateClosed) {
      auto next = recordset->NextRecordset();
      // None has data: the last closed one is the answer, because callers expect an object.
      if (next == nullptr) break;
      recordset = std::move(next);
    }
  } catch (const RuntimeError&) {
    // What has been reached is the answer.
  }
  return recordset;
}

double Velk_ModOpnImp::ValOrZero(const Value& value) {
  return isNull(value) ? 0 : leadingNumber(toText(value));
}

}  // namespace velk
