// Takes the place of the spreadsheet application: keeps the calls, answers them, and fails where
// told to.
#pragma once

#include <algorithm>
#include <deque>
#include <fstream>
#include <map>
#include <optional>
#include <set>

#include "apps/host/class_registration.h"
#include "platform/windows/com_errors.h"
#include "platform/windows/variants.h"
#include "platform/windows/wide_text.h"
#include "tests/support/checks.h"

namespace velk {

class FakeExcel {
 public:
  FakeExcel();
  ~FakeExcel() { RegDeleteTreeW(HKEY_LOCAL_MACHINE, programKey); }
  FakeExcel(const FakeExcel&) = delete;
  FakeExcel& operator=(const FakeExcel&) = delete;

  Texts calls;  ///< those that give no object, and Open; a range is named for its parts
  std::map<std::string, Variant> answers;
  std::set<std::string> unknown;  ///< members that it lacks
  std::string savedBytes = "new";
  int failAt = -1;  ///< the call that fails, counting all from 0
  int count = 0;
  std::deque<HRESULT> rejections;  ///< of the next calls
  int objects = 0;                 ///< that live now, with the application
  int objectsAtQuit = -1;

  /// Whether only this and the class object hold any of it.
  bool isReleased() const;
  /// Leaves the name of the class registered, as an installation that was removed may.
  void withdrawClass() { registered_.reset(); }

 private:
  class Object;

  // For the machine: Wine activates only what that knows.
  static constexpr wchar_t programKey[] = L"Software\\Classes\\Excel.Application";
  static constexpr wchar_t classKey[] = L"Software\\Classes\\Excel.Application\\CLSID";
  static constexpr wchar_t id[] = L"{5B0E5D0C-6E0B-4C57-9B43-0C6A8C1D7E21}";
  static constexpr CLSID classId = {
      0x5B0E5D0C, 0x6E0B, 0x4C57, {0x9B, 0x43, 0x0C, 0x6A, 0x8C, 0x1D, 0x7E, 0x21}};

  static std::string textOf(const VARIANT& value) {
    if (value.vt == VT_ERROR) return "";
    if ((value.vt & VT_ARRAY) == 0) return toText(toValue(value)).substr(0, 16);
    std::string all;
    const auto* element = static_cast<const VARIANT*>(value.parray->pvData);
    for (ULONG i = 0; i < std::min(value.parray->rgsabound[1].cElements, 3UL); ++i) {
      all += '[' + textOf(element[i]) + ']';
    }
    return all;
  }

  static std::string textOf(const std::string& name, WORD kind, const DISPPARAMS& parameters);
  Variant invoke(const std::string& owner, const std::string& name, WORD kind,
                 const DISPPARAMS& parameters);

  std::ofstream saved_;  ///< can't be moved or removed until it is closed
  ComPtr<Object> application_;
  std::optional<ClassRegistration> registered_;
};

class FakeExcel::Object final : public ComObject<IDispatch> {
 public:
  Object(FakeExcel& excel, std::string name) : excel_(excel), name_(std::move(name)) {
    ++excel_.objects;
  }
  ~Object() override { --excel_.objects; }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID,
                                          DISPID* ids) noexcept override {
    members_.push_back(fromWide(names[0]));
    *ids = static_cast<DISPID>(members_.size() - 1);
    return excel_.unknown.contains(members_.back()) ? DISP_E_UNKNOWNNAME : S_OK;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD kind, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO* exception, UINT*) noexcept override {
    if (!excel_.rejections.empty()) {
      const HRESULT rejected = excel_.rejections.front();
      excel_.rejections.pop_front();
      return rejected;
    }
    return guarded(
        [&] {
          const std::string& member = members_[static_cast<std::size_t>(id)];
          Variant answer = excel_.invoke(name_, member, kind, *parameters);
          if (result != nullptr) *result = answer.release();
        },
        [&](const RuntimeError& error) { return fillIn(exception, error); });
  }

 private:
  FakeExcel& excel_;
  std::string name_;
  Texts members_;
};

inline FakeExcel::FakeExcel() : application_(makeObject<Object>(*this, "Application")) {
  REQUIRE(RegSetKeyValueW(HKEY_LOCAL_MACHINE, classKey, nullptr, REG_SZ, id, sizeof id) == 0);
  registered_.emplace(classId, [application = application_] { return application; });
}

inline bool FakeExcel::isReleased() const {
  application_->AddRef();
  return application_->Release() == 2 && objects == 1;
}

/// The call without the paths of files, which differ from run to run.
inline std::string FakeExcel::textOf(const std::string& name, WORD kind,
                                     const DISPPARAMS& parameters) {
  std::string given;
  for (UINT i = parameters.cArgs; i-- > 0;) {
    const bool isPath = i + 1 == parameters.cArgs && (name == "Open" || name == "SaveAs");
    given += isPath ? "" : textOf(parameters.rgvarg[i]);
    if (i > 0 && !isPath) given += ',';
  }
  if ((kind & DISPATCH_PROPERTYPUT) != 0) return name + '=' + given;
  return given.empty() ? name : name + '(' + given + ')';
}

inline Variant FakeExcel::invoke(const std::string& owner, const std::string& name, WORD kind,
                                 const DISPPARAMS& parameters) {
  static const std::set<std::string> objectMembers{
      "Workbooks", "Open",         "Worksheets", "UsedRange",  "Rows",          "Columns",
      "Range",     "EntireColumn", "Font",       "Validation", "ActiveWorkbook"};
  const std::string call = textOf(name, kind, parameters);
  const bool makesWorkbook = owner == "Workbooks";
  const bool givesObject = makesWorkbook || objectMembers.contains(name);
  if (!givesObject || name == "Open") calls.push_back(owner + '.' + call);
  if (name == "SaveAs") {
    saved_.open(parameters.rgvarg[1].bstrVal, std::ios::binary);
    saved_ << savedBytes << std::flush;
  }
  if (name == "Quit") objectsAtQuit = objects;
  const bool fails = count++ == failAt;
  if (name == "Quit" || (name == "Close" && !fails)) saved_.close();
  if (fails) throw RuntimeError(1004, "The application says why");
  if (givesObject) {
    const std::string& made = makesWorkbook                ? "Workbook"
                              : owner.starts_with("Range") ? owner
                                                           : call;
    return Variant(makeObject<Object>(*this, made).Get());
  }
  const auto known = answers.find(owner + '.' + call);
  return known == answers.end() ? Variant() : Variant::copyOf(known->second.get());
}

}  // namespace velk
