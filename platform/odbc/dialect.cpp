#include "platform/odbc/dialect.h"

#include <algorithm>

namespace velk {

const KnownStatement* findStatement(const Dialect& dialect, std::string_view shape) {
  const auto found = std::ranges::find(dialect.statements, shape, &KnownStatement::shape);
  return found == dialect.statements.end() ? nullptr : &*found;
}

Diagnostic normalized(const Dialect& dialect, Diagnostic diagnostic) {
  const bool isGeneral = diagnostic.state == "HY000" || diagnostic.state == "01000";
  const std::int32_t code = diagnostic.native & dialect.errorCodeBits;
  const auto found = std::ranges::find_if(dialect.errors, [&](const NativeError& error) {
    // Any other state is the driver's own finding, and says more than a code.
    return (error.reported.empty() ? isGeneral : error.reported == diagnostic.state) &&
           (error.code == 0 || error.code == code) &&
           diagnostic.message.find(error.message) != std::string::npos;
  });
  if (found != dialect.errors.end()) diagnostic.state = found->state;
  return diagnostic;
}

}  // namespace velk
