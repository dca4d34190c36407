// The memory that one bound parameter of a prepared statement reads from.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string_view>

#include "platform/database.h"
#include "platform/odbc/odbc_api.h"

namespace velk {

/// Stays at one address from binding to the end of the statement, so that a further execution only
/// writes the new value. Holds values of one type.
class ParameterBuffer {
 public:
  /// Characters (UTF-16 units) of the longest text: the declared size of every parameter.
  static constexpr std::size_t maxText = 2048;

  /// Error 3421 for a type code that is not in DataType.
  explicit ParameterBuffer(std::int32_t type);
  ParameterBuffer(const ParameterBuffer&) = delete;
  ParameterBuffer& operator=(const ParameterBuffer&) = delete;

  std::int32_t type() const { return static_cast<std::int32_t>(type_); }

  /// Binds to the mark at the one-based position.
  SQLRETURN bind(SQLHANDLE statement, SQLUSMALLINT position);

  /// Takes the value as the buffer's type. Error 3421 for a value that does not convert, and for a
  /// text longer than maxText.
  void set(const Value& value);
  /// For the text type only. Error 3421 as above.
  void setText(std::string_view text);

 private:
  void setNumber(const Value& value);
  void setInteger(const Value& value);
  void setDate(const Value& value);
  void setDays(double days);
  void setAnyText(const Value& value);
  bool widenAscii(std::string_view text);

  DataType type_;
  SQLLEN indicator_ = SQL_NULL_DATA;
  SQLINTEGER integer_ = 0;
  double number_ = 0;
  SQL_TIMESTAMP_STRUCT timestamp_{};
  std::unique_ptr<char16_t[]> text_;  // maxText, for the text type only
};

}  // namespace velk
