#include "platform/windows/com_errors.h"

#include <new>

#include "platform/windows/wide_text.h"

namespace velk {

namespace {

constexpr DWORD facilityControl = 10;

// 0x800A.... is how Visual Basic and ADO pass the numbers of run-time errors on.
std::int32_t numberOf(HRESULT result) {
  const bool control = (static_cast<DWORD>(result) & 0xFFFF0000U) == 0x800A0000U;
  return control ? result & 0xFFFF : result;
}

std::string systemDescription(HRESULT result) {
  wchar_t text[512];
  // IGNORE_INSERTS, because there are no values for the placeholders of a text.
  constexpr DWORD flags = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
  DWORD length = FormatMessageW(flags, nullptr, static_cast<DWORD>(result), 0, text,
                                static_cast<DWORD>(std::size(text)), nullptr);
  // It ends with a line break, which a log line must not have.
  while (length > 0 && text[length - 1] <= L' ') --length;
  return fromWide({text, length});
}

// standardDescription answers for unknown numbers, too, with the text of error 0.
std::string describe(HRESULT result) {
  const auto number = static_cast<ErrorNumber>(numberOf(result));
  const std::string_view standard = standardDescription(number);
  if (standard != standardDescription(ErrorNumber{})) return std::string(standard);
  std::string system = systemDescription(result);
  return system.empty() ? std::string(standard) : system;
}

}  // namespace

RuntimeError comError(HRESULT result, std::string description) {
  if (description.empty()) description = describe(result);
  return {numberOf(result), std::move(description)};
}

RuntimeError lastComError(HRESULT result) {
  ComPtr<IErrorInfo> info;
  Bstr description;
  if (GetErrorInfo(0, info.GetAddressOf()) == S_OK) info->GetDescription(description.receive());
  return comError(result, description.text());
}

HRESULT toHresult(const RuntimeError& error) {
  const std::int32_t number = error.number();
  // A negative number is an HRESULT already.
  if (number < 0) return number;
  // An HRESULT has 16 bits for a number, and 0 must not become a success.
  if (number == 0 || number > 0xFFFF) return E_FAIL;
  return MAKE_HRESULT(SEVERITY_ERROR, facilityControl, number);
}

RuntimeError currentError() {
  try {
    throw;
  } catch (const RuntimeError& error) {
    return error;
  } catch (const std::bad_alloc&) {
    return RuntimeError(ErrorNumber::OutOfMemory);
  } catch (const std::exception& error) {
    return {E_UNEXPECTED, error.what()};
  } catch (...) {
    return {E_UNEXPECTED, {}};
  }
}

HRESULT reportError(const RuntimeError& error, REFIID iid, const wchar_t* source) {
  ComPtr<ICreateErrorInfo> info;
  // Without memory for a description the caller still gets the number.
  if (SUCCEEDED(CreateErrorInfo(info.GetAddressOf()))) {
    info->SetGUID(iid);
    info->SetSource(const_cast<wchar_t*>(source));
    info->SetDescription(toWide(error.description()).data());
    SetErrorInfo(0, queryInterface<IErrorInfo>(info.Get()).Get());
  }
  return toHresult(error);
}

HRESULT fillIn(EXCEPINFO* exception, const RuntimeError& error) {
  if (exception != nullptr) {
    *exception = {};
    // An EXCEPINFO has either scode or wCode; wCode has no room for an HRESULT.
    exception->scode = toHresult(error);
    exception->bstrDescription = SysAllocString(toWide(error.description()).c_str());
  }
  return DISP_E_EXCEPTION;
}

}  // namespace velk
