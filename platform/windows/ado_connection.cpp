#include "platform/windows/ado_connection.h"

#include <utility>

#include "platform/windows/ado_command.h"
#include "platform/windows/ado_recordset.h"
#include "platform/windows/ado_types.h"
#include "platform/windows/variants.h"
#include "platform/windows/wide_text.h"

namespace velk {

namespace {

class AdoConnection final : public Connection {
 public:
  explicit AdoConnection(ComPtr<_Connection> connection) : connection_(std::move(connection)) {}

  std::shared_ptr<Recordset> Execute(std::string_view text) override {
    Variant affected;
    ComPtr<_Recordset> rows;
    call(connection_, &_Connection::Execute, Bstr(text).get(), affected.receive(), defaultOptions,
         rows.GetAddressOf());
    // Some providers answer S_OK and give no record set.
    if (!rows) throw RuntimeError(ErrorNumber::ObjectNotSet);
    return adoRecordset(std::move(rows));
  }

  std::unique_ptr<Command> newCommand() override { return adoCommand(connection_); }

 private:
  ComPtr<_Connection> connection_;
};

}  // namespace

std::shared_ptr<Connection> adoConnection(IUnknown* object) {
  if (object == nullptr) return nullptr;
  auto connection = queryInterface<_Connection>(object);
  if (!connection) connection = queryInterface<_Connection>(object, newerConnectionId);
  if (!connection) throw RuntimeError(ErrorNumber::TypeMismatch);
  return std::make_shared<AdoConnection>(std::move(connection));
}

}  // namespace velk
