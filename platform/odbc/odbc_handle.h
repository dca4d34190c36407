// Every handle of the database interface, as one template.
#pragma once

#include <utility>

#include "platform/odbc/diagnostics.h"
#include "platform/odbc/odbc_api.h"

namespace velk {

/// Owns one handle; empty when default constructed or moved from.
template <SQLSMALLINT Type>
class OdbcHandle {
 public:
  static constexpr SQLSMALLINT type = Type;

  OdbcHandle() = default;
  /// Allocates within `parent` (a null handle for an environment). Throws what the parent says.
  explicit OdbcHandle(SQLHANDLE parent) {
    if (!SQL_SUCCEEDED(SQLAllocHandle(Type, parent, &handle_))) {
      throw toRuntimeError(readDiagnostics(parentType, parent));
    }
  }
  OdbcHandle(OdbcHandle&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  OdbcHandle& operator=(OdbcHandle&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~OdbcHandle() {
    if (handle_ == nullptr) return;
    if constexpr (Type == SQL_HANDLE_DBC) SQLDisconnect(handle_);
    SQLFreeHandle(Type, handle_);
  }

  SQLHANDLE get() const { return handle_; }

 private:
  static constexpr SQLSMALLINT parentType =
      Type == SQL_HANDLE_STMT ? SQL_HANDLE_DBC : SQL_HANDLE_ENV;

  SQLHANDLE handle_ = nullptr;
};

using EnvironmentHandle = OdbcHandle<SQL_HANDLE_ENV>;
using ConnectionHandle = OdbcHandle<SQL_HANDLE_DBC>;
using StatementHandle = OdbcHandle<SQL_HANDLE_STMT>;

}  // namespace velk
