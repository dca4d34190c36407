// The database interface's own headers and the few casts that its wide text needs.
#pragma once

#ifdef _WIN32
#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>  // the interface's headers need its types
#endif
#include <cstdint>

#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>

namespace velk {

static_assert(sizeof(SQLWCHAR) == sizeof(char16_t));

/// The interface never writes to a text that is an input, but does not say so.
inline SQLWCHAR* wideText(const char16_t* text) {
  return reinterpret_cast<SQLWCHAR*>(
      const_cast<char16_t*>(text));  // NOLINT(cppcoreguidelines-pro-type-const-cast)
}

/// Small integers travel through pointer arguments.
inline SQLPOINTER integerArgument(std::uintptr_t value) {
  return reinterpret_cast<SQLPOINTER>(value);  // NOLINT: the interface's own convention
}

}  // namespace velk
