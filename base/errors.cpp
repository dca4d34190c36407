#include "base/errors.h"

#include <utility>

namespace velk {

namespace {

std::string_view runtimeDescription(ErrorNumber number) {
  switch (number) {
    case ErrorNumber::InvalidProcedureCall:
      return "Invalid procedure call or argument";
    case ErrorNumber::Overflow:
      return "Overflow";
    case ErrorNumber::OutOfMemory:
      return "Out of memory";
    case ErrorNumber::SubscriptOutOfRange:
      return "Subscript out of range";
    case ErrorNumber::TypeMismatch:
      return "Type mismatch";
    case ErrorNumber::ObjectNotSet:
      return "Object variable or With block variable not set";
    case ErrorNumber::InvalidUseOfNull:
      return "Invalid use of Null";
    case ErrorNumber::InvalidPropertyValue:
      return "Invalid property value";
    case ErrorNumber::CannotCreateObject:
      return "ActiveX component can't create object";
    case ErrorNumber::NoSuchPropertyOrMethod:
      return "Object doesn't support this property or method";
    case ErrorNumber::InvalidPicture:
      return "Invalid picture";
    case ErrorNumber::CancelSelected:
      return "Cancel was selected.";
    case ErrorNumber::IndexOutOfBounds:
      return "Index out of bounds";
    default:
      return {};
  }
}

std::string_view fileDescription(ErrorNumber number) {
  switch (number) {
    case ErrorNumber::BadFileNameOrNumber:
      return "Bad file name or number";
    case ErrorNumber::FileNotFound:
      return "File not found";
    case ErrorNumber::FileAlreadyOpen:
      return "File already open";
    case ErrorNumber::DeviceIo:
      return "Device I/O error";
    case ErrorNumber::DiskFull:
      return "Disk full";
    case ErrorNumber::InputPastEnd:
      return "Input past end of file";
    case ErrorNumber::TooManyFiles:
      return "Too many files";
    case ErrorNumber::PermissionDenied:
      return "Permission denied";
    case ErrorNumber::PathFileAccess:
      return "Path/File access error";
    case ErrorNumber::PathNotFound:
      return "Path not found";
    case ErrorNumber::InvalidFileFormat:
      return "Invalid file format";
    default:
      return {};
  }
}

std::string_view dataDescription(ErrorNumber number) {
  switch (number) {
    case ErrorNumber::NoCurrentRecord:
      return "Either BOF or EOF is True, or the current record has been deleted. Requested "
             "operation "
             "requires a current record.";
    case ErrorNumber::ItemNotFound:
      return "Item cannot be found in the collection corresponding to the requested name or "
             "ordinal.";
    case ErrorNumber::WrongArgumentType:
      return "Application uses a value of the wrong type for the current operation.";
    case ErrorNumber::ObjectClosed:
      return "Operation is not allowed when the object is closed.";
    case ErrorNumber::ConnectionInvalid:
      return "The connection cannot be used to perform this operation. It is either closed or "
             "invalid in this context.";
    case ErrorNumber::ProviderTimeout:
      return "The database did not answer in time";
    case ErrorNumber::IntegrityViolation:
      return "The database refused the data: a constraint would be violated";
    case ErrorNumber::DataTruncated:
      return "A text is too long for its database column";
    case ErrorNumber::NoSuchTable:
      return "The database has no such table";
    case ErrorNumber::LoginFailed:
      return "The database refused the login";
    case ErrorNumber::NoPermission:
      return "The database user lacks the permission";
    case ErrorNumber::CommandErrors:
      return "The database could not process the command";
    case ErrorNumber::ProviderFailure:
      return "Unspecified database error";
    default:
      return {};
  }
}

}  // namespace

std::string_view standardDescription(ErrorNumber number) {
  for (const auto describe : {runtimeDescription, fileDescription, dataDescription}) {
    const std::string_view description = describe(number);
    if (!description.empty()) return description;
  }
  return "Application-defined or object-defined error";
}

RuntimeError::RuntimeError(ErrorNumber number)
    : RuntimeError(number, std::string(standardDescription(number))) {}

RuntimeError::RuntimeError(std::int32_t number, std::string description)
    : number_(number), description_(std::move(description)) {}

RuntimeError::RuntimeError(ErrorNumber number, std::string description)
    : RuntimeError(static_cast<std::int32_t>(number), std::move(description)) {}

}  // namespace velk
