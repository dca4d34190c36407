#include "platform/windows/variants.h"

#include "tests/windows/server_dll.h"

namespace velk {
namespace {

/// A variant of a type, from a text.
Variant variantOf(VARTYPE type, const char* text) {
  Variant made;
  Variant source{Value(std::string(text))};
  REQUIRE(VariantChangeTypeEx(made.receive(), const_cast<VARIANT*>(&source.get()), 0x0409, 0,
                              type) == S_OK);
  return made;
}

TEST_CASE("what fields hold") {
  const struct {
    VARTYPE type;
    const char* text;
    Value value;
  } rows[] = {{VT_UI1, "255", 255},
              {VT_I2, "-5", -5},
              {VT_I4, "-2147483648", -2147483647 - 1},
              {VT_UI4, "4294967295", 4294967295.0},
              {VT_I8, "9007199254740993", "9007199254740993"},
              {VT_I8, "9007199254740992", 9007199254740992.0},
              {VT_I8, "9223372036854775807", "9223372036854775807"},
              {VT_UI8, "7", 7},
              {VT_R4, "0.5", 0.5},
              {VT_R8, "1E-7", 1e-7},
              {VT_CY, "-1234.5", "-1234.5"},
              {VT_DECIMAL, "0.0000000001", "0.0000000001"},
              {VT_BOOL, "-1", "True"},
              {VT_BSTR, "Zo\xC3\xAB \xF0\x9F\x98\x80", "Zo\xC3\xAB \xF0\x9F\x98\x80"}};
  for (const auto& row : rows) {
    CAPTURE(std::string(row.text));
    const Variant variant = variantOf(row.type, row.text);
    CHECK((toValue(variant.get()) == row.value));
    VARIANT reference{};
    reference.vt = VT_BYREF | VT_VARIANT;
    reference.pvarVal = const_cast<VARIANT*>(&variant.get());
    CHECK((toValue(reference) == row.value));
  }
  for (const Value& value : {Value(Null{}), Value(Date{-1.25}), Value("a"), Value(2), Value(0.1)}) {
    CHECK((toValue(Variant(value).get()) == value));
  }
  CHECK((toValue(VARIANT{}) == Value(Null{})));
}

TEST_CASE("what no value is") {
  VARIANT error{};
  error.vt = VT_ERROR;
  const Variant array(std::vector<std::string>{"a"});
  const Variant object(static_cast<IDispatch*>(nullptr));
  for (const VARIANT& row : {error, array.get(), object.get()}) {
    CAPTURE(row.vt);
    CHECK(errorOf([&] { toValue(row); }) == 13);
  }
}

TEST_CASE("HRESULTs and numbers, both ways") {
  const struct {
    HRESULT result;
    std::int32_t number;
    const char* description;
  } rows[] = {
      {static_cast<HRESULT>(0x800A0009), 9, "Subscript out of range"},
      {static_cast<HRESULT>(0x800A0E78), 3704,
       "Operation is not allowed when the object is closed."},
      {static_cast<HRESULT>(0x80040E31), -2147217871, "The database did not answer in time"},
      {DISP_E_TYPEMISMATCH, -2147352571, nullptr}};
  for (const auto& row : rows) {
    CAPTURE(row.number);
    const RuntimeError error = comError(row.result);
    CHECK(error.number() == row.number);
    if (row.description != nullptr) CHECK(error.description() == row.description);
    CHECK_FALSE(error.description().empty());
    CHECK(toHresult(error) == row.result);
  }
}

}  // namespace
}  // namespace velk
