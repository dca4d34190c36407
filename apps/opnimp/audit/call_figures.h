// How many calls a run made, how they ended, and how long they took.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "apps/opnimp/audit/call_times.h"
#include "apps/opnimp/audit/recorder.h"

namespace velk {

struct CallFigures {
  struct OfKind {
    std::array<std::size_t, callResultCount> results{};  ///< by CallResult
    CallTimes times;                                     ///< of those that came back
  };
  std::array<OfKind, callKindCount> kinds{};  ///< by CallKind
};

CallFigures figuresOf(const Recorder& recorder);

/// For programs, such as "procedure" and "in-doubt".
std::string_view codeOf(CallKind kind);
std::string_view codeOf(CallResult result);

}  // namespace velk
