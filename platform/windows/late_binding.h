// Members of automation objects called by their names.
#pragma once

#include <ole2.h>

#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "platform/windows/com_pointer.h"
#include "platform/windows/variants.h"

namespace velk {

/// One argument of a call. A template rather than overloads, among which a number or a pointer to a
/// text would choose bool.
template <class Argument>
Variant toArgument(Argument&& given) {
  using Given = std::remove_cvref_t<Argument>;
  if constexpr (std::is_convertible_v<Argument, std::string_view>) {
    return Variant(Value(std::string(std::string_view(given))));
  } else if constexpr (std::is_same_v<Given, Variant>) {
    return std::forward<Argument>(given);
  } else if constexpr (std::is_same_v<Given, bool> || std::is_convertible_v<Argument, IDispatch*>) {
    return Variant(given);
  } else {
    return Variant(Value(given));
  }
}

/// The arguments of a call: variants, values, Booleans, objects, texts.
template <class... Arguments>
std::vector<Variant> argumentList(Arguments&&... arguments) {
  std::vector<Variant> list;
  (list.push_back(toArgument(std::forward<Arguments>(arguments))), ...);
  return list;
}

/// Calls a member, with arguments in their order, as the kind given (DISPATCH_METHOD,
/// DISPATCH_PROPERTYGET, DISPATCH_PROPERTYPUT or several). Error 438 where there is no such member,
/// 91 for a null object; an error that the member raised keeps its number and description.
Variant callMember(IDispatch* object, std::string_view name, WORD kind,
                   const std::vector<Variant>& arguments = {});

/// As above, with an object for result; error 438 where the result is none, 91 where it is null.
ComPtr<IDispatch> memberObject(IDispatch* object, std::string_view name,
                               const std::vector<Variant>& arguments = {});

/// The object in a variant; error 438 where there is none, 91 where it is null.
ComPtr<IDispatch> heldObject(const Variant& variant);

}  // namespace velk
