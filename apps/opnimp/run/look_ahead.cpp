#include "apps/opnimp/run/look_ahead.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "apps/opnimp/audit/pasted_value.h"
#include "base/errors.h"
#include "platform/forwarding_connection.h"
#include "platform/memory_recordset.h"

namespace velk {

namespace {

/// Enough that a message is a small part of a record's own, and few enough to be posted soon.
constexpr std::size_t recordsAhead = 16;
/// Longer than any code.
constexpr std::size_t longestQuery = 512;

bool isYes(const Value& answer) {
  return Velk_ModOpnImp::ValOrZero(answer) > 0;
}

class AnsweredConnection final : public ForwardingConnection {
 public:
  AnsweredConnection(LookAhead& ahead, std::shared_ptr<Connection> inner)
      : ForwardingConnection(std::move(inner)), ahead_(ahead) {}

  std::shared_ptr<Recordset> Execute(std::string_view text) override {
    auto answer = ahead_.answer(text);
    return answer != nullptr ? answer : ForwardingConnection::Execute(text);
  }

 private:
  LookAhead& ahead_;
};

}  // namespace

std::shared_ptr<Recordset> LookAhead::answer(std::string_view query) {
  const std::size_t row = screen_ == nullptr ? 0 : screen_->currentRow();
  // What a run asks as a whole is asked in its turn.
  if (row == 0 || !beside_.isAsked() || !isFor(kind_)) return nullptr;
  if (row >= endRow_) ask(row);
  const auto found = answers_.find(query);
  if (found == answers_.end() || !isYes(found->second)) return nullptr;
  return std::make_shared<MemoryRecordset>(1, std::vector<Value>{found->second});
}

std::string LookAhead::queryOf(std::size_t row) const {
  return partyQuery(*kind_.opening, screen_->mappingList.cell(row, openingField::code));
}

void LookAhead::ask(std::size_t firstRow) {
  endRow_ = std::min(firstRow + recordsAhead, screen_->lastDataRow() + 1);
  answers_.clear();
  for (std::size_t row = firstRow; row < endRow_; ++row) {
    std::string query = queryOf(row);
    if (query.size() <= longestQuery && !pastesQuote(query)) answers_[std::move(query)] = Null{};
  }
  if (answers_.empty()) return;
  std::vector<std::string> queries;
  for (const auto& [query, answer] : answers_) queries.push_back(query);
  // Always as many, so that it is one statement for all.
  queries.resize(recordsAhead, queries.front());
  trapErrors(
      [&] {
        const std::vector<Value> values = beside_.connection->askTogether(queries);
        std::size_t at = 0;
        for (auto& [query, answer] : answers_) answer = values.at(at++);
      },
      [&](const RuntimeError& error) {
        answers_.clear();
        // Somebody holds a lock: these records ask for themselves, and wait for it.
        if (error.is(ErrorNumber::ProviderTimeout) && !beside_.connection->isLost()) return;
        beside_.failure = error.description();
      });
}

std::shared_ptr<Connection> answeredAhead(LookAhead& ahead,
                                          std::shared_ptr<Connection> connection) {
  return std::make_shared<AnsweredConnection>(ahead, std::move(connection));
}

}  // namespace velk
