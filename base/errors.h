// Runtime errors: the one closed type for everything that a routine's error trap may catch.
//
// Users and support know numbers and descriptions from the error log, so they are those of the
// libraries that such applications are written with: 5 to 481 and 32755 of the automation runtime,
// 3021 to 3709 of the data access library, 35600 of the list controls, negative ones (HRESULTs) of
// the database provider. HRESULT, SQLSTATE and errno are translated into a RuntimeError in exactly
// one function each, beside the code that meets them.
#pragma once

#include <cstdint>
#include <exception>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace velk {

enum class ErrorNumber : std::int32_t {
  InvalidProcedureCall = 5,
  Overflow = 6,
  OutOfMemory = 7,
  SubscriptOutOfRange = 9,
  TypeMismatch = 13,
  BadFileNameOrNumber = 52,
  FileNotFound = 53,
  FileAlreadyOpen = 55,
  DeviceIo = 57,
  DiskFull = 61,
  InputPastEnd = 62,
  TooManyFiles = 67,
  PermissionDenied = 70,
  PathFileAccess = 75,
  PathNotFound = 76,
  ObjectNotSet = 91,
  InvalidUseOfNull = 94,
  InvalidFileFormat = 321,
  InvalidPropertyValue = 380,
  CannotCreateObject = 429,
  NoSuchPropertyOrMethod = 438,
  WrongNumberOfArguments = 450,
  InvalidPicture = 481,
  NoCurrentRecord = 3021,
  ItemNotFound = 3265,
  WrongArgumentType = 3421,
  ObjectClosed = 3704,
  ConnectionInvalid = 3709,
  CancelSelected = 32755,
  IndexOutOfBounds = 35600,
  ProviderTimeout = -2147217871,
  IntegrityViolation = -2147217873,
  DataTruncated = -2147217833,
  NoSuchTable = -2147217865,
  LoginFailed = -2147217843,
  NoPermission = -2147217911,
  CommandErrors = -2147217900,
  ProviderFailure = -2147467259,
};

/// The runtime's own description of a number; for a number that has none, the runtime's generic
/// text "Application-defined or object-defined error".
std::string_view standardDescription(ErrorNumber number);

class RuntimeError : public std::exception {
 public:
  /// An error with its standard description.
  explicit RuntimeError(ErrorNumber number);
  /// An error whose description comes from elsewhere (a driver, a host).
  RuntimeError(std::int32_t number, std::string description);
  RuntimeError(ErrorNumber number, std::string description);

  std::int32_t number() const noexcept { return number_; }
  bool is(ErrorNumber number) const noexcept {
    return number_ == static_cast<std::int32_t>(number);
  }
  const std::string& description() const noexcept { return description_; }
  const char* what() const noexcept override { return description_.c_str(); }

 private:
  std::int32_t number_;
  std::string description_;
};

/// An error trap: a runtime error ends the routine and goes to `failed`, all else passes. True when
/// the routine came to its end.
template <class Routine, class Failed>
bool trapErrors(Routine&& routine, Failed&& failed) {
  try {
    std::forward<Routine>(routine)();
    return true;
  } catch (const RuntimeError& error) {
    std::forward<Failed>(failed)(error);
    return false;
  }
}

/// For the end of an object, which nothing must leave: whatever the routine throws ends here.
template <class Routine>
void ignoringFailure(Routine&& routine) noexcept {
  try {
    std::forward<Routine>(routine)();
  } catch (...) {  // NOLINT(bugprone-empty-catch): there is nobody left to tell
  }
}

/// Runs work on whole files, which may ask for more memory than there is: error 7 then.
template <class Work>
auto refusingWithoutMemory(Work&& work) {
  try {
    return work();
  } catch (const std::bad_alloc&) {
    throw RuntimeError(ErrorNumber::OutOfMemory);
  } catch (const std::length_error&) {  // more than a container can address
    throw RuntimeError(ErrorNumber::OutOfMemory);
  }
}

}  // namespace velk
