#include "apps/opnimp/audit/call_figures.h"

namespace velk {

CallFigures figuresOf(const Recorder& recorder) {
  CallFigures figures;
  for (const RecordedCall& call : recorder.calls()) {
    ++figures.kinds[static_cast<std::size_t>(call.kind)]
          .results[static_cast<std::size_t>(call.result)];
  }
  for (std::size_t kind = 0; kind < callKindCount; ++kind) {
    figures.kinds[kind].times = recorder.times(kind);
  }
  return figures;
}

std::string_view codeOf(CallKind kind) {
  static constexpr std::array<std::string_view, callKindCount> codes{"query", "check", "procedure"};
  return codes[static_cast<std::size_t>(kind)];
}

std::string_view codeOf(CallResult result) {
  static constexpr std::array<std::string_view, callResultCount> codes{
      "unknown", "ok", "failed", "in-doubt", "failed-late", "not-run"};
  return codes[static_cast<std::size_t>(result)];
}

}  // namespace velk
