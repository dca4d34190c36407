// The parameters of an ADO command.
#pragma once

#include <ole2.h>

#include <ado_com.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "base/values.h"
#include "platform/windows/com_pointer.h"

namespace velk {

/// What one parameter is; the numbers are ADO's codes.
struct ParameterData {
  std::string name;
  std::int32_t type = 0;
  std::int32_t direction = 0;
  std::int32_t size = 0;
  Value value;
};

/// Finds our own parameter from an interface pointer of it.
struct ParameterAccess : IUnknown {
  virtual ParameterData& STDMETHODCALLTYPE data() noexcept = 0;
};

/// A command's parameters in their order. Their values may change until the command runs.
using ParameterList = std::vector<ComPtr<ParameterAccess>>;

ComPtr<_Parameter> parameterObject(ParameterData data);
/// The collection that adds to `list`: Append, of parameter objects of this program only (3421),
/// Count, and Item by position from 0 (3265 beyond the last).
ComPtr<Parameters> parametersObject(std::shared_ptr<ParameterList> list);

}  // namespace velk

__CRT_UUID_DECL(velk::ParameterAccess, 0x7D0A5B42, 0x2E9B, 0x4C36, 0x8F, 0x15, 0x0D, 0xA2, 0x63,
                0xB8, 0x91, 0x4C)
