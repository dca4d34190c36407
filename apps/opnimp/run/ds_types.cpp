#include "apps/opnimp/run/ds_types.h"

#include "base/errors.h"
#include "base/numbers.h"
#include "masters/ds_type_rules.h"

namespace velk {

namespace {

// What the import asks about one type, asked for all.
std::string activeTypes() {
  return "select DSTypeValue from DSType_Master where DSTypeName = 'DSType' and DSTypeCtlPos = 1 "
         "and Active >= 1 and OCGtype = " +
         std::string(groupInForce) + " order by DSTypeValue";
}

// The screen takes a type for a default one if the procedure answers nothing at all.
bool isDefault(Connection& connection, const std::string& type) {
  const auto command = connection.newCommand();
  command->setCommandType(CommandType::StoredProcedure);
  command->setCommandText("Velk_sp_checkDefault_DSTypeValue");
  command->Append("Param0", static_cast<std::int32_t>(DataType::VarChar), inputParameter,
                  parameterSize);
  command->setValue(0, type);
  const auto answer = command->Execute(defaultOptions);
  if (answer->State() == stateClosed || answer->isEOF()) return true;
  return leadingNumber(toText(answer->field(0))) != 0;
}

}  // namespace

std::vector<std::string> allowedDsTypes(Connection& connection) {
  std::vector<std::string> types;
  try {
    const auto rows = connection.Execute(activeTypes());
    for (; !rows->isEOF(); rows->MoveNext()) {
      std::string type = toText(rows->field(0));
      if (isDefault(connection, type)) types.push_back(std::move(type));
    }
  } catch (const RuntimeError&) {
    // The list is only a hint in the report: without it, the result of the import stays the same.
    return {};
  }
  return types;
}

}  // namespace velk
