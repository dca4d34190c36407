// Objects of the spreadsheet application, with patience when it is busy.
#pragma once

#include <string_view>
#include <utility>
#include <vector>

#include "platform/windows/late_binding.h"
#include "platform/windows/variants.h"

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

  /// A property or the result of a method; arguments are texts, integers, Booleans or variants.
  template <class... Arguments>
  Variant get(std::string_view name, Arguments&&... arguments) const {
    std::vector<Variant> list;
    (list.push_back(argument(std::forward<Arguments>(arguments))), ...);
    return invoke(name, DISPATCH_METHOD | DISPATCH_PROPERTYGET, list);
  }
  template <class... Arguments>
  ExcelObject object(std::string_view name, Arguments&&... arguments) const {
    return {heldObject(get(name, std::forward<Arguments>(arguments)...)), *patience_};
  }
  template <class... Arguments>
  void call(std::string_view name, Arguments&&... arguments) const {
    std::vector<Variant> list;
    (list.push_back(argument(std::forward<Arguments>(arguments))), ...);
    invoke(name, DISPATCH_METHOD, list);
  }
  template <class Argument>
  void put(std::string_view name, Argument&& value) const {
    std::vector<Variant> list;
    list.push_back(argument(std::forward<Argument>(value)));
    invoke(name, DISPATCH_PROPERTYPUT, list);
  }
  /// For properties that came with later versions of the application.
  template <class Argument>
  void putIfKnown(std::string_view name, Argument&& value) const;

 private:
  static Variant argument(Variant&& variant) { return std::move(variant); }
  static Variant argument(bool flag) { return Variant(flag); }
  static Variant argument(int number) { return Variant(Value(number)); }
  static Variant argument(double number) { return Variant(Value(number)); }
  static Variant argument(std::string_view text) { return Variant(Value(std::string(text))); }
  static Variant argument(const char* text) { return argument(std::string_view(text)); }
  static Variant argument(const std::string& text) { return argument(std::string_view(text)); }

  Variant invoke(std::string_view name, WORD kind, const std::vector<Variant>& arguments) const;

  ComPtr<IDispatch> object_;
  Patience* patience_ = nullptr;
};

template <class Argument>
void ExcelObject::putIfKnown(std::string_view name, Argument&& value) const {
  try {
    put(name, std::forward<Argument>(value));
  } catch (const RuntimeError& error) {
    if (!error.is(ErrorNumber::NoSuchPropertyOrMethod)) throw;
  }
}

}  // namespace velk
