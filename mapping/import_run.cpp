#include "mapping/import_run.h"

#include <utility>

#include "shared/csv_text.h"

namespace velk {

ImportObserver& ImportRun::observer() const {
  static ImportObserver nobody;
  return observer_ == nullptr ? nobody : *observer_;
}

// The row is kept where a cell is empty: it is part of the refusal.
std::optional<std::size_t> ImportRun::firstEmptyCell(std::size_t field, std::size_t last) {
  for (std::size_t row = firstDataRow; row <= last; ++row) {
    currentRow_ = row;
    if (mappingList_.cell(row, field).empty()) return row;
  }
  leaveRows();
  return std::nullopt;
}

// The observer hears of a record last, since it may end the run instead.
void ImportRun::beginRecord(std::size_t row) {
  currentRow_ = row;
  posting_ = {};
  anyBegun_ = true;
  observer().recordBegins(row);
}

void ImportRun::leaveRows() {
  currentRow_ = 0;
  anyBegun_ = false;
  cause_.clear();
}

// The log has the line before anybody else hears of it: whatever happens then, nothing is lost.
void ImportRun::found(Verdict verdict, const Finding& why, std::string_view line) {
  if (!line.empty()) module_.WriteErrorLog(line);
  observer().recordFound(verdict, why, line);
}

void ImportRun::raise(ErrorNumber number, std::string cause) {
  cause_ = std::move(cause);
  throw RuntimeError(number);
}

std::string ImportRun::stop(const RuntimeError& error) {
  // An import reads beyond the list when Browse or a host has emptied it.
  const bool listChanged = error.is(ErrorNumber::IndexOutOfBounds);
  const std::string what =
      listChanged ? "The list has changed since View. Press View again." : error.description();
  std::string text = stopText(cause_.empty() ? what : what + ": " + cause_);
  observer().runStopped(error, text);
  return text;
}

std::string ImportRun::stopText(std::string_view description) const {
  if (!anyBegun_) return std::string(description);
  const std::size_t record = recordsBefore_ + currentRow_ - mappingRow;
  const std::string where = currentRow_ == 0 ? "its end" : "record " + std::to_string(record);
  std::string text = "The import stopped at " + where + ": " + std::string(description);
  while (text.ends_with('.')) text.pop_back();  // the one that follows is enough
  // A dry run posts nothing, and neither does a run that stops at its first record.
  const bool first = currentRow_ == firstDataRow && recordsBefore_ == 0;
  const bool posted = !first && !observer().isDryRun();
  text += posted ? ". Records before it are posted" : "";
  text += posted && repeatsPosting_ ? "; importing this file again would post them twice." : ".";
  return text;
}

std::shared_ptr<Recordset> ImportRun::post(Connection& connection, std::string_view procedure,
                                           std::span<const ProcedureParameter> parameters) {
  return post([&] { return runProcedure(connection, {procedure, parameters}, Purpose::Post); });
}

void ImportRun::postBoth(Connection& connection, const ProcedureCall& first,
                         const ProcedureCall& second) {
  const auto pair = connection.postBoth(first, second);
  Velk_ModOpnImp::GetDataRecordset(post([&] { return pair->first(); }));
  Velk_ModOpnImp::GetDataRecordset(post([&] { return pair->second(); }));
}

std::shared_ptr<Recordset> ImportRun::post(
    const std::function<std::shared_ptr<Recordset>()>& call) {
  ++posting_.calls;
  ++posting_.failed;  // until it has ended well: even telling the user of an error may fail
  auto reply = module_.trapCall(call);
  if (module_.lastErrorNumber() == 0) --posting_.failed;
  return reply;
}

std::string ImportRun::unquoted(std::string_view field) {
  std::string text;
  trap("", [&] { text = velk::unquoted(field); });
  return text;
}

}  // namespace velk
