// A connection that tells a recorder of every call.
#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "apps/opnimp/audit/recorder.h"

namespace velk {

class RecordingConnection final : public Connection {
 public:
  RecordingConnection(Recorder& recorder, std::shared_ptr<Connection> inner);

  std::shared_ptr<Recordset> Execute(std::string_view text) override;
  std::unique_ptr<Command> newCommand() override;
  std::vector<Diagnostic> diagnostics() const override { return inner_->diagnostics(); }
  bool isLost() const override { return inner_->isLost(); }

 private:
  Recorder& recorder_;
  std::shared_ptr<Connection> inner_;
};

}  // namespace velk
