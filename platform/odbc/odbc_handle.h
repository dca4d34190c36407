// The handles of the database interface.
#pragma once

#include "base/unique_handle.h"
#include "platform/odbc/diagnostics.h"
#include "platform/odbc/odbc_api.h"

namespace velk {

template <SQLSMALLINT Type>
struct OdbcHandleKind {
  using Handle = SQLHANDLE;
  static Handle none() { return nullptr; }
  static void close(Handle handle) {
    if constexpr (Type == SQL_HANDLE_DBC) SQLDisconnect(handle);
    SQLFreeHandle(Type, handle);
  }
};

template <SQLSMALLINT Type>
using OdbcHandle = UniqueHandle<OdbcHandleKind<Type>>;
using EnvironmentHandle = OdbcHandle<SQL_HANDLE_ENV>;
using ConnectionHandle = OdbcHandle<SQL_HANDLE_DBC>;
using StatementHandle = OdbcHandle<SQL_HANDLE_STMT>;

/// A new handle within `parent` (null for an environment). Throws what the parent reports.
template <SQLSMALLINT Type>
OdbcHandle<Type> allocateHandle(SQLHANDLE parent) {
  constexpr SQLSMALLINT parentType = Type == SQL_HANDLE_STMT ? SQL_HANDLE_DBC : SQL_HANDLE_ENV;
  SQLHANDLE handle = nullptr;
  if (!SQL_SUCCEEDED(SQLAllocHandle(Type, parent, &handle))) {
    throw toRuntimeError(readDiagnostics(parentType, parent));
  }
  return OdbcHandle<Type>(handle);
}

}  // namespace velk
