#include "apps/opnimp/audit/recorder.h"

#include <utility>

#include "apps/opnimp/audit/run_ended.h"

namespace velk {

void Recorder::append(std::string_view line) {
  // Kept before the file is tried: the report shows the lines that the file did not take.
  lines_.push_back({row(), std::string(line), {}, {}});
  if (file_ == nullptr) return;
  RecordedLine& kept = lines_.back();
  try {
    file_->append(line);
    kept.kept = RecordedLine::Kept::InFile;
  } catch (const RuntimeError& error) {
    kept.kept = RecordedLine::Kept::NotWritten;
    kept.writeError = error.description();
    // Passed on, because recording must change nothing for the import.
    throw;
  }
}

void Recorder::endSession() {
  // The recorder lives longer than the screen and the file.
  screen_ = nullptr;
  file_ = nullptr;
}

ErrorLog& Recorder::log(ErrorLog* file) {
  file_ = file;
  return *this;
}

MessageHandler Recorder::messages(MessageHandler show) {
  return [this, show = std::move(show)](const Message& message) {
    messages_.push_back({row(), message});
    show(message);
  };
}

std::size_t Recorder::beginCall(CallKind kind, std::string_view text,
                                std::vector<Value> parameters) {
  // Noted before the call runs, with the result Unknown, which remains if no answer comes.
  calls_.push_back({row(), kind, std::string(text), std::move(parameters), {}, {}});
  return calls_.size() - 1;
}

// On a lost connection nobody knows whether the call took effect, whatever the driver says of it.
void Recorder::callFailed(std::size_t call, CallResult result, const RuntimeError& error,
                          const Connection& connection) {
  calls_[call].error = CallError{error.number(), error.description(), connection.diagnostics()};
  if (connection.isLost()) {
    calls_[call].result = CallResult::Unknown;
    throw RunEnded{RunEnded::Why::ConnectionLost};
  }
  calls_[call].result = result;
}

}  // namespace velk
