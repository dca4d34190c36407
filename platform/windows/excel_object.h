// Objects of the spreadsheet application, with patience when it is busy.
#pragma once

#include <string_view>
#include <utility>
#include <vector>

#include "base/errors.h"
#include "platform/windows/late_binding.h"

namespace velk {

/// What is left of the ten seconds that a busy application is given.
class Patience {
 public:
  /// Pauses and answers true; false when the time is used up.
  bool wait();

 private:
  unsigned waited_ = 0;  ///< in milliseconds
};

class ExcelObject {
 public:
  ExcelObject() = default;
  ExcelObject(ComPtr<IDispatch> object, Patience& patience)
      : object_(std::move(object)), patience_(&patience) {}

  /// A property or the result of a method; arguments are those of an argumentList.
  template <class... Arguments>
  Variant get(std::string_view name, Arguments&&... arguments) const {
    return invoke(name, DISPATCH_METHOD | DISPATCH_PROPERTYGET,
                  argumentList(std::forward<Arguments>(arguments)...));
  }
  template <class... Arguments>
  ExcelObject object(std::string_view name, Arguments&&... arguments) const {
    return {heldObject(get(name, std::forward<Arguments>(arguments)...)), *patience_};
  }
  template <class... Arguments>
  void call(std::string_view name, Arguments&&... arguments) const {
    invoke(name, DISPATCH_METHOD, argumentList(std::forward<Arguments>(arguments)...));
  }
  template <class Argument>
  void put(std::string_view name, Argument&& value) const {
    invoke(name, DISPATCH_PROPERTYPUT, argumentList(std::forward<Argument>(value)));
  }
  /// For properties that came with later versions of the application.
  template <class Argument>
  void putIfKnown(std::string_view name, Argument&& value) const {
    try {
      put(name, std::forward<Argument>(value));
    } catch (const RuntimeError& error) {
      if (!error.is(ErrorNumber::NoSuchPropertyOrMethod)) throw;
    }
  }

 private:
  Variant invoke(std::string_view name, WORD kind, const std::vector<Variant>& arguments) const;

  ComPtr<IDispatch> object_;
  Patience* patience_ = nullptr;
};

}  // namespace velk
