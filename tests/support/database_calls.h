// What tests of a database call it with, each in one expression.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "platform/database.h"
#include "tests/support/checks.h"
#include "tests/support/scratch_database.h"

namespace velk {

using Errors = ErrorNumber;

constexpr std::int32_t code(Errors number) {
  return static_cast<std::int32_t>(number);
}

/// A value with a parameter type; where none is given, the value's own, and text for null.
struct Parameter {
  Value value;
  DataType type;

  Parameter(Value given, DataType as) : value(std::move(given)), type(as) {}
  template <class T>
  requires std::is_convertible_v<const T&, Value> Parameter(const T& given)
      : Parameter(given, DataType::VarChar) {
    constexpr DataType own[] = {DataType::VarChar, DataType::Integer, DataType::Double,
                                DataType::Date, DataType::VarChar};
    type = own[value.index()];
  }
};
using Parameters = std::vector<Parameter>;

inline std::shared_ptr<Recordset> runCommand(Connection& connection, std::string_view text,
                                             const Parameters& parameters,
                                             CommandType kind = CommandType::Text) {
  const auto command = connection.newCommand();
  command->setCommandType(kind);
  for (std::size_t i = 0; i < parameters.size(); ++i) {
    const auto& [value, type] = parameters[i];
    command->Append("Param" + std::to_string(2 * i), static_cast<std::int32_t>(type),
                    inputParameter, parameterSize);
    command->setValue(i, value);
  }
  command->setCommandText(text);
  return command->Execute(defaultOptions);
}

}  // namespace velk
