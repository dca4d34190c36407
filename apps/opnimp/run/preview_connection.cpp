#include "apps/opnimp/run/preview_connection.h"

#include <utility>
#include <vector>

#include "platform/memory_recordset.h"

namespace velk {

namespace {

// Every command passes, because at View a screen runs checks only. They answer 1 when they pass.
class PassingCheck final : public Command {
 public:
  void setCommandType(CommandType /*type*/) override {}
  void setCommandText(std::string_view /*text*/) override {}
  void Append(std::string_view /*name*/, std::int32_t /*type*/, std::int32_t /*direction*/,
              std::int32_t /*size*/) override {}
  void setValue(std::size_t /*position*/, const Value& /*value*/) override {}
  std::shared_ptr<Recordset> Execute(std::int32_t /*options*/) override {
    return std::make_shared<MemoryRecordset>(1, std::vector<Value>{std::int32_t{1}});
  }
};

class PreviewConnection final : public OwnConnection {
 public:
  std::unique_ptr<Command> newCommand() override { return std::make_unique<PassingCheck>(); }

  std::shared_ptr<Recordset> Execute(std::string_view text) override {
    if (text.find("ColorSettings") != std::string_view::npos) {
      return ClosedConnection().Execute(text);
    }
    // No salesman may have an empty type.
    const bool asksForNothing = text.find("DSTypeValue = ''") != std::string_view::npos;
    if (asksForNothing) return std::make_shared<MemoryRecordset>(1, std::vector<Value>{});
    const bool asksForDate = text.find("OpeningDate") != std::string_view::npos;
    const Value answer = asksForDate ? Value(Date{lastCalendarDay}) : Value(std::int32_t{1});
    return std::make_shared<MemoryRecordset>(1, std::vector<Value>{answer});
  }
};

}  // namespace

std::shared_ptr<OwnConnection> previewConnection() {
  return std::make_shared<PreviewConnection>();
}

}  // namespace velk
