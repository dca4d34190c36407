// A database that could not be opened.
#pragma once

#include <utility>
#include <vector>

#include "base/errors.h"
#include "platform/database.h"

namespace velk {

class CannotConnect : public RuntimeError {
 public:
  CannotConnect(const RuntimeError& error, std::vector<Diagnostic> said)
      : RuntimeError(error), diagnostics_(std::move(said)) {}

  /// All that the driver or its manager said, first record first.
  const std::vector<Diagnostic>& diagnostics() const { return diagnostics_; }

 private:
  std::vector<Diagnostic> diagnostics_;
};

}  // namespace velk
