// Tells before each call of a procedure which one it is, from 1.
#pragma once

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "platform/database.h"

namespace velk {

/// Tells before each call of a pair; of calls that are sent together before the first.
class WatchedPair final : public CallPair {
 public:
  WatchedPair(std::unique_ptr<CallPair> inner, std::function<void()> tell)
      : inner_(std::move(inner)), tell_(std::move(tell)) {}

  std::shared_ptr<Recordset> first() override {
    tell_();
    hasToldBoth_ = inner_->isSentTogether();
    if (hasToldBoth_) tell_();
    return inner_->first();
  }
  std::shared_ptr<Recordset> second() override {
    if (!hasToldBoth_) tell_();
    return inner_->second();
  }
  bool isSentTogether() const override { return inner_->isSentTogether(); }

 private:
  std::unique_ptr<CallPair> inner_;
  std::function<void()> tell_;
  bool hasToldBoth_ = false;
};

class WatchedConnection final : public OwnConnection {
 public:
  using Before = std::function<void(int call)>;
  WatchedConnection(std::shared_ptr<OwnConnection> inner, Before before)
      : inner_(std::move(inner)), before_(std::move(before)) {}

  std::shared_ptr<Recordset> Execute(std::string_view text) override {
    return inner_->Execute(text);
  }
  std::unique_ptr<Command> newCommand() override {
    before_(++calls_);  // the system makes a command for each call
    return inner_->newCommand();
  }
  std::unique_ptr<CallPair> postBoth(const ProcedureCall& first,
                                     const ProcedureCall& second) override {
    return std::make_unique<WatchedPair>(inner_->postBoth(first, second),
                                         [this] { before_(++calls_); });
  }
  std::vector<Value> askTogether(std::span<const std::string> queries) override {
    return inner_->askTogether(queries);
  }
  std::vector<Diagnostic> diagnostics() const override { return inner_->diagnostics(); }
  bool changedNothing() const override { return inner_->changedNothing(); }
  bool isLost() const override { return inner_->isLost(); }
  bool isSpent() const override { return inner_->isSpent(); }
  void cancel() override { inner_->cancel(); }
  void beginTransaction() override { inner_->beginTransaction(); }
  void rollback() override { inner_->rollback(); }
  void commit() override { inner_->commit(); }
  bool isInTransaction() override { return inner_->isInTransaction(); }
  std::string identity(bool mayStore) override { return inner_->identity(mayStore); }
  bool canLeaveTransactions() const override { return inner_->canLeaveTransactions(); }
  bool isRefused(std::string_view procedure, std::size_t parameters) override {
    return inner_->isRefused(procedure, parameters);
  }
  std::string whyNotReady() override { return inner_->whyNotReady(); }
  std::string session() override { return inner_->session(); }
  std::string place() override { return inner_->place(); }
  bool hasEnded(std::string_view session, std::string_view place) override {
    return inner_->hasEnded(session, place);
  }
  std::size_t repeatedCalls() const override { return inner_->repeatedCalls(); }
  std::string history() override { return inner_->history(); }

 private:
  std::shared_ptr<OwnConnection> inner_;
  Before before_;
  int calls_ = -1;  // a screen makes one that it never runs
};

}  // namespace velk
