// The public class as hosts call it: early bound, late bound, and wrongly.
#include <ado_com.h>
#include <xmmintrin.h>

#include <fstream>
#include <thread>

#include "platform/windows/late_binding.h"
#include "platform/windows/variants.h"
#include "tests/windows/message_boxes.h"
#include "tests/windows/screen_windows.h"
#include "tests/windows/server_dll.h"

namespace velk {
namespace {

constexpr WORD getOrCall = DISPATCH_METHOD | DISPATCH_PROPERTYGET;

std::string writeFile(const char* content) {
  const auto path = std::filesystem::temp_directory_path() / L"r\u00e9cords.csv";
  std::ofstream(path, std::ios::binary) << content;
  return fromWide(path.wstring());
}

std::string valueOf(const Variant& variant) {
  return toText(toValue(variant.get()));
}

/// Calls a late-bound member with these arguments.
template <class... Arguments>
Variant late(IDispatch* object, std::string_view name, WORD kind, Arguments&&... arguments) {
  return callMember(object, name, kind, argumentList(std::forward<Arguments>(arguments)...));
}

HRESULT invoke(IDispatch* object, DISPID id, WORD kind, std::vector<VARIANT> arguments,
               EXCEPINFO* exception = nullptr) {
  DISPPARAMS parameters{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
  return object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, kind, &parameters, nullptr, exception,
                        nullptr);
}

TEST_CASE("the reader, early bound") {
  const ServerDll dll;
  const auto object = dll.makeObject();
  CHECK(object->put_FileName(Bstr(writeFile("a,\"b,\xE9\"\r\n1,2,3\r")).get()) == S_OK);
  Bstr field;
  VARIANT_BOOL valid = VARIANT_TRUE;
  CHECK(object->Fields(1, field.receive()) == S_OK);
  CHECK(field.text() == "\"b,é\"");
  const MessageBoxes boxes;
  CHECK(dll.makeObject()->ValidateData(2, object.Get(), &valid) == S_OK);
  CHECK(valid == VARIANT_FALSE);
  REQUIRE(boxes.shown().size() == 1);
  CHECK(boxes.shown()[0].starts_with("Import|"));
  Variant split;
  CHECK(object->CSVSplit(nullptr, split.receive()) == S_OK);
  REQUIRE(split.get().vt == (VT_ARRAY | VT_BSTR));
  CHECK(split.get().parray->rgsabound[0].cElements == 0);
}

TEST_CASE("the reader, late bound, in any letter case") {
  const ServerDll dll;
  const auto object = dll.makeObject();
  IDispatch* const reader = object.Get();
  const std::string path = writeFile("a,\"b,c\"\r\n1,2");
  late(reader, "FILENAME", DISPATCH_PROPERTYPUT, Value(path));
  CHECK(valueOf(late(reader, "filename", DISPATCH_PROPERTYGET)) == path);
  CHECK(valueOf(late(reader, "COUNT", getOrCall)) == "2");
  CHECK(valueOf(late(reader, "fields", getOrCall, Value("1"))) == "\"b,c\"");
  CHECK(valueOf(late(reader, "validatedata", getOrCall, Value(2.0), reader)) == "True");
  late(reader, "movenext", DISPATCH_METHOD);
  CHECK(valueOf(late(reader, "Fields", getOrCall, Value(0))) == "1");
  late(reader, "MoveNext", DISPATCH_METHOD);
  CHECK(valueOf(late(reader, "IsEof", getOrCall)) == "True");
  late(reader, "Rewind", DISPATCH_METHOD);
  CHECK(valueOf(late(reader, "IsEOF", getOrCall)) == "False");
  const Variant split = late(reader, "CSVSplit", DISPATCH_METHOD, Value("x,\"y,z\""));
  REQUIRE(split.get().vt == (VT_ARRAY | VT_BSTR));
  auto* const fields = static_cast<BSTR*>(split.get().parray->pvData);
  CHECK(split.get().parray->rgsabound[0].cElements == 2);
  CHECK(Bstr::textOf(fields[1]) == "\"y,z\"");
}

TEST_CASE("errors reach the caller with number and description") {
  const ServerDll dll;
  const auto object = dll.makeObject();
  object->put_FileName(Bstr(writeFile("a\r\n")).get());
  Bstr field;
  VARIANT_BOOL valid = VARIANT_FALSE;
  CHECK(object->Fields(7, field.receive()) == static_cast<HRESULT>(0x800A0009));
  CHECK(lastComError(E_FAIL).description() == "Subscript out of range");
  CHECK(object->Fields(0, nullptr) == E_POINTER);
  CHECK(object->ValidateData(1, nullptr, &valid) == static_cast<HRESULT>(0x800A005B));
  CHECK(queryInterface<ISupportErrorInfo>(object.Get())
            ->InterfaceSupportsErrorInfo(__uuidof(_Velk_ClsOpnImp)) == S_OK);
  try {
    late(object.Get(), "Fields", DISPATCH_METHOD, Value(-1));
    FAIL("no error");
  } catch (const RuntimeError& error) {
    CHECK(error.number() == 9);
    CHECK(error.description() == "Subscript out of range");
  }
}

TEST_CASE("calls that do not fit are refused with automation's own codes") {
  const ServerDll dll;
  const auto object = dll.makeObject();
  const Variant number(Value(1)), text(Value("x"));
  CHECK(invoke(object.Get(), 6, DISPATCH_METHOD, {text.get()}) == DISP_E_TYPEMISMATCH);
  CHECK(invoke(object.Get(), 6, DISPATCH_METHOD, {}) == DISP_E_BADPARAMCOUNT);
  CHECK(invoke(object.Get(), 8, DISPATCH_METHOD, {number.get()}) == DISP_E_BADPARAMCOUNT);
  CHECK(invoke(object.Get(), 8, DISPATCH_PROPERTYPUT, {number.get()}) == DISP_E_MEMBERNOTFOUND);
  CHECK(invoke(object.Get(), 99, DISPATCH_METHOD, {}) == DISP_E_MEMBERNOTFOUND);
  CHECK(invoke(object.Get(), 11, DISPATCH_METHOD, {number.get(), number.get()}) ==
        DISP_E_TYPEMISMATCH);
  CHECK(errorOf([&] { late(object.Get(), "Close", DISPATCH_METHOD); }) == 438);
}

TEST_CASE("entry points take the host's objects in every form and give them back") {
  const ServerDll dll;
  const auto object = dll.makeObject();
  const auto connection = createObject<_Connection>(__uuidof(::Connection));
  _Connection* given = connection.Get();
  IPictureDisp* icon = nullptr;
  CHECK(object->ImportCustomerOpening(&given, &icon) == S_OK);
  CHECK(closeScreens() == Texts{"Import Customer Opening"});
  CHECK(object->ImportCustomerOpening(nullptr, &icon) == E_POINTER);
  auto* dispatch = static_cast<IDispatch*>(given);
  VARIANT byValue{}, byReference{}, inVariant{}, null{};
  byValue.vt = null.vt = VT_DISPATCH;
  byValue.pdispVal = dispatch;
  byReference.vt = VT_BYREF | VT_DISPATCH;
  byReference.ppdispVal = &dispatch;
  inVariant.vt = VT_BYREF | VT_VARIANT;
  inVariant.pvarVal = &byValue;
  for (const VARIANT& passed : {byValue, byReference, inVariant, null}) {
    CAPTURE(passed.vt);
    for (const DISPID id : {1, 2, 3}) {
      CHECK(invoke(object.Get(), id, DISPATCH_METHOD, {null, passed}) == S_OK);
    }
    CHECK(closeScreens().size() == 3);
  }
  CHECK(given == connection.Get());
  CHECK(dispatch == given);
  CHECK(references(connection.Get()) == 1);
  VARIANT wrong = byValue;
  wrong.pdispVal = object.Get();
  EXCEPINFO exception{};
  CHECK(invoke(object.Get(), 1, DISPATCH_METHOD, {null, wrong}, &exception) == DISP_E_EXCEPTION);
  CHECK(exception.scode == static_cast<HRESULT>(0x800A000D));
}

TEST_CASE("the DLL may go when nothing of it is held") {
  const ServerDll dll;
  CHECK(dll.call("DllCanUnloadNow") == S_OK);
  {
    const auto factory = dll.factory();
    CHECK(dll.call("DllCanUnloadNow") == S_FALSE);
    factory->LockServer(TRUE);
  }
  CHECK(dll.call("DllCanUnloadNow") == S_FALSE);
  dll.factory()->LockServer(FALSE);
  CHECK(dll.call("DllCanUnloadNow") == S_OK);
  {
    const auto object = dll.makeObject();
    CHECK(dll.call("DllCanUnloadNow") == S_FALSE);
    CHECK(references(object.Get()) == 1);
    auto again = queryInterface<IDispatch>(object.Get());
    CHECK(references(object.Get()) == 2);
    CHECK(queryInterface<IUnknown>(again.Get()).Get() ==
          queryInterface<IUnknown>(object.Get()).Get());
  }
  CHECK(dll.call("DllCanUnloadNow") == S_OK);
}

TEST_CASE("a factory refuses what it cannot make") {
  const ServerDll dll;
  const auto factory = dll.factory();
  void* object = &object;
  CHECK(factory->CreateInstance(factory.Get(), IID_IUnknown, &object) == CLASS_E_NOAGGREGATION);
  CHECK(object == nullptr);
  CHECK(factory->CreateInstance(nullptr, IID_IPersist, &object) == E_NOINTERFACE);
  CHECK(factory->CreateInstance(nullptr, IID_IUnknown, nullptr) == E_POINTER);
}

TEST_CASE("another thread's object has a module of its own") {
  const ServerDll dll;
  const auto mine = dll.makeObject();
  const std::string path = writeFile("x");
  std::thread([&] {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    const MessageBoxes boxes;
    const auto theirs = dll.makeObject();
    for (int i = 0; i < 255; ++i) theirs->put_FileName(Bstr(path).get());
    CHECK(boxes.shown().size() == 1);  // out of file numbers, in this apartment only
    CoUninitialize();
  }).join();
  LONG count = 0;
  mine->put_FileName(Bstr(path).get());
  CHECK(mine->Count(&count) == S_OK);
  CHECK(count == 1);
}

TEST_CASE("a host's floating-point exceptions are masked inside and back afterwards") {
  const ServerDll dll;
  const auto object = dll.makeObject();
  object->put_FileName(Bstr(writeFile("a")).get());
  const Variant index(Value(0.1));  // to round it is inexact, which would trap
  const unsigned masked = _mm_getcsr();
  const unsigned trapping = masked & ~static_cast<unsigned>(_MM_MASK_MASK);
  _mm_setcsr(trapping);
  const HRESULT outcome = invoke(object.Get(), 6, DISPATCH_METHOD, {index.get()});
  const unsigned after = _mm_getcsr();
  _mm_setcsr(masked);
  CHECK(outcome == S_OK);
  CHECK((after & _MM_MASK_MASK) == 0);
}

}  // namespace
}  // namespace velk
