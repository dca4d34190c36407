#include "base/errors.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace velk {

namespace {

struct Description {
  ErrorNumber number;
  std::string_view text;
};

// Users and support search for these texts: they are the runtime's and the libraries' own, to the
// letter. Only those of the provider's numbers, whose drivers bring a text of their own, are ours.
constexpr Description descriptions[] = {
    {ErrorNumber::InvalidProcedureCall, "Invalid procedure call or argument"},
    {ErrorNumber::Overflow, "Overflow"},
    {ErrorNumber::OutOfMemory, "Out of memory"},
    {ErrorNumber::SubscriptOutOfRange, "Subscript out of range"},
    {ErrorNumber::TypeMismatch, "Type mismatch"},
    {ErrorNumber::ObjectNotSet, "Object variable or With block variable not set"},
    {ErrorNumber::InvalidUseOfNull, "Invalid use of Null"},
    {ErrorNumber::InvalidPropertyValue, "Invalid property value"},
    {ErrorNumber::CannotCreateObject, "ActiveX component can't create object"},
    {ErrorNumber::NoSuchPropertyOrMethod, "Object doesn't support this property or method"},
    {ErrorNumber::WrongNumberOfArguments,
     "Wrong number of arguments or invalid property assignment"},
    {ErrorNumber::InvalidPicture, "Invalid picture"},
    {ErrorNumber::CancelSelected, "Cancel was selected."},
    {ErrorNumber::IndexOutOfBounds, "Index out of bounds"},
    {ErrorNumber::BadFileNameOrNumber, "Bad file name or number"},
    {ErrorNumber::FileNotFound, "File not found"},
    {ErrorNumber::FileAlreadyOpen, "File already open"},
    {ErrorNumber::DeviceIo, "Device I/O error"},
    {ErrorNumber::DiskFull, "Disk full"},
    {ErrorNumber::InputPastEnd, "Input past end of file"},
    {ErrorNumber::TooManyFiles, "Too many files"},
    {ErrorNumber::PermissionDenied, "Permission denied"},
    {ErrorNumber::PathFileAccess, "Path/File access error"},
    {ErrorNumber::PathNotFound, "Path not found"},
    {ErrorNumber::InvalidFileFormat, "Invalid file format"},
    {ErrorNumber::NoCurrentRecord,
     "Either BOF or EOF is True, or the current record has been deleted. Requested operation "
     "requires a current record."},
    {ErrorNumber::ItemNotFound,
     "Item cannot be found in the collection corresponding to the requested name or ordinal."},
    {ErrorNumber::WrongArgumentType,
     "Application uses a value of the wrong type for the current operation."},
    {ErrorNumber::ObjectClosed, "Operation is not allowed when the object is closed."},
    {ErrorNumber::ConnectionInvalid,
     "The connection cannot be used to perform this operation. It is either closed or invalid in "
     "this context."},
    {ErrorNumber::ProviderTimeout, "The database did not answer in time"},
    {ErrorNumber::IntegrityViolation,
     "The database refused the data: a constraint would be violated"},
    {ErrorNumber::DataTruncated, "A text is too long for its database column"},
    {ErrorNumber::NoSuchTable, "The database has no such table"},
    {ErrorNumber::LoginFailed, "The database refused the login"},
    {ErrorNumber::NoPermission, "The database user lacks the permission"},
    {ErrorNumber::CommandErrors, "The database could not process the command"},
    {ErrorNumber::ProviderFailure, "Unspecified database error"},
};

}  // namespace

std::string_view standardDescription(ErrorNumber number) {
  const auto* const found = std::ranges::find(descriptions, number, &Description::number);
  // These are the runtime's own words for a number that it does not know.
  return found == std::end(descriptions) ? "Application-defined or object-defined error"
                                         : found->text;
}

RuntimeError::RuntimeError(ErrorNumber number)
    : RuntimeError(number, std::string(standardDescription(number))) {}

RuntimeError::RuntimeError(std::int32_t number, std::string description)
    : number_(number), description_(std::move(description)) {}

RuntimeError::RuntimeError(ErrorNumber number, std::string description)
    : RuntimeError(static_cast<std::int32_t>(number), std::move(description)) {}

}  // namespace velk
