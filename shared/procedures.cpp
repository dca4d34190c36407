// Stored procedures: running one, finding its result, reading a number out of it.
#include <utility>

#include "base/numbers.h"
#include "shared/Velk_ModOpnImp.h"

namespace velk {

namespace {

std::shared_ptr<Recordset> run(Connection& connection, std::string_view name,
                               std::span<const ProcedureParameter> parameters, Purpose purpose) {
  const std::unique_ptr<Command> command = connection.newCommand();
  command->setPurpose(purpose);
  command->setCommandType(CommandType::StoredProcedure);
  for (std::size_t i = 0; i < parameters.size(); ++i) {
    // The number is the value's place in the flat list of values and types: Param0, Param2, ...
    command->Append("Param" + std::to_string(2 * i), static_cast<std::int32_t>(parameters[i].type),
                    inputParameter, parameterSize);
    command->setValue(i, parameters[i].value);
  }
  command->setCommandText(name);
  return command->Execute(defaultOptions);
}

}  // namespace

// The error's number is kept because callers that ignore errors still ask for it afterwards. Only a
// time-out is shown: it is the one error that passes when the user waits.
std::shared_ptr<Recordset> Velk_ModOpnImp::ExecuteProcedure(
    Connection& connection, std::string_view name, std::span<const ProcedureParameter> parameters,
    Purpose purpose) {
  try {
    auto recordset = run(connection, name, parameters, purpose);
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
