// The arguments of a call through IDispatch.
#pragma once

#include <ole2.h>

#include <cstdint>
#include <string>

#include "platform/windows/com_pointer.h"
#include "platform/windows/variants.h"

namespace velk {

/// Arguments are counted from 0 in the order of the declaration, however they were passed: by
/// position, by name, by reference, in variants. Errors carry the HRESULT that Invoke has to return
/// (DISP_E_...), and leave the place of the bad argument at `badArgument` (null: not wanted).
class DispatchArguments {
 public:
  DispatchArguments(const DISPPARAMS& passed, LCID locale, UINT* badArgument)
      : passed_(passed), locale_(locale), badArgument_(badArgument) {}

  UINT count() const { return passed_.cArgs; }

  std::int32_t integer(UINT position) const { return converted(position, VT_I4).get().lVal; }
  std::int16_t shortInteger(UINT position) const { return converted(position, VT_I2).get().iVal; }
  std::string text(UINT position) const;
  /// An object or null, by value, by reference or in a by-reference variant.
  ComPtr<IUnknown> object(UINT position) const;

 private:
  UINT placeOf(UINT position) const;
  Variant converted(UINT position, VARTYPE type) const;
  [[noreturn]] void refuse(HRESULT result, UINT place) const;

  const DISPPARAMS& passed_;
  LCID locale_;
  UINT* badArgument_;
};

/// True for the errors that Invoke returns as they are, instead of exception information.
bool isDispatchError(std::int32_t number);

}  // namespace velk
