// A connection on top of another one, which does whatever a derived class does not do itself.
#pragma once

#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/database.h"

namespace velk {

class ForwardingConnection : public Connection {
 public:
  explicit ForwardingConnection(std::shared_ptr<Connection> inner) : inner_(std::move(inner)) {}

  std::shared_ptr<Recordset> Execute(std::string_view text) override {
    return inner_->Execute(text);
  }
  std::unique_ptr<Command> newCommand() override { return inner_->newCommand(); }
  std::unique_ptr<CallPair> postBoth(const ProcedureCall& first,
                                     const ProcedureCall& second) override {
    return inner_->postBoth(first, second);
  }
  std::vector<Diagnostic> diagnostics() const override { return inner_->diagnostics(); }
  bool changedNothing() const override { return inner_->changedNothing(); }
  bool isRefused(std::string_view procedure, std::size_t parameters) override {
    return inner_->isRefused(procedure, parameters);
  }
  bool isLost() const override { return inner_->isLost(); }
  bool isSpent() const override { return inner_->isSpent(); }
  std::size_t repeatedCalls() const override { return inner_->repeatedCalls(); }

 protected:
  const std::shared_ptr<Connection>& inner() const { return inner_; }

 private:
  std::shared_ptr<Connection> inner_;
};

}  // namespace velk
