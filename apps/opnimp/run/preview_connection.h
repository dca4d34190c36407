// What a preview has in the place of a database: the checks that a screen makes at View pass, and
// whatever else is executed fails as on a connection that was never opened.
#pragma once

#include "platform/database.h"

namespace velk {

class PreviewConnection final : public Connection {
 public:
  std::shared_ptr<Recordset> Execute(std::string_view text) override {
    return closed_.Execute(text);
  }
  /// Of a stored procedure, which answers 1.
  std::unique_ptr<Command> newCommand() override;

 private:
  ClosedConnection closed_;
};

}  // namespace velk
