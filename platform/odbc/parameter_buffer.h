// The memory that one bound parameter of a prepared statement reads from.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/database.h"
#include "platform/odbc/odbc_api.h"

namespace velk {

/// A value and the type code that it is to be bound with.
struct CommandParameter {
  std::int32_t type = static_cast<std::int32_t>(DataType::VarChar);
  std::int32_t direction = inputParameter;
  Value value = Null{};
  std::size_t size =
      parameterSize;  ///< of the longest text, in UTF-16 units; parameterSize at least
};

/// Stays at one address from binding to the end of the statement, so that a further execution only
/// writes the new value. Contains values of one type.
class ParameterBuffer {
 public:
  /// Error 3421 for a type code that is not in DataType.
  explicit ParameterBuffer(const CommandParameter& parameter);
  ParameterBuffer(const ParameterBuffer&) = delete;
  ParameterBuffer& operator=(const ParameterBuffer&) = delete;

  /// True if the parameter's values can be written here as it is bound now.
  bool fits(const CommandParameter& parameter) const;

  /// Binds to the mark at the one-based position.
  SQLRETURN bind(SQLHANDLE statement, SQLUSMALLINT position);

  /// Takes the value as the buffer's type. Error 3421 for a value that does not convert, and for a
  /// text longer than the parameter's size.
  void set(const Value& value);

 private:
  struct Binding;
  static const Binding& bindingOf(std::int32_t type);
  template <class Fixed>
  void put(const Fixed& value);
  void putText(std::string_view text);

  const Binding& binding_;
  SQLLEN indicator_ = SQL_NULL_DATA;
  std::vector<char16_t> memory_;  // of the parameter's size; numbers and dates take its beginning
};

}  // namespace velk
