// A procedure or a text command with its parameters, in one expression.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/database.h"

namespace velk {

using Parameters = std::vector<std::pair<Value, DataType>>;

inline std::shared_ptr<Recordset> runCommand(Connection& connection, CommandType kind,
                                             std::string_view text, const Parameters& parameters) {
  const auto command = connection.newCommand();
  command->setCommandType(kind);
  for (std::size_t i = 0; i < parameters.size(); ++i) {
    const auto& [value, type] = parameters[i];
    command->Append("Param" + std::to_string(2 * i), static_cast<std::int32_t>(type),
                    inputParameter, 2048);
    command->setValue(i, value);
  }
  command->setCommandText(text);
  return command->Execute(defaultOptions);
}

inline std::shared_ptr<Recordset> callProcedure(Connection& connection, std::string_view name,
                                                const Parameters& parameters) {
  return runCommand(connection, CommandType::StoredProcedure, name, parameters);
}

}  // namespace velk
