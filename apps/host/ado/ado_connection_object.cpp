#include "apps/host/ado/ado_connection_object.h"

#include <utility>

#include "apps/host/ado/ado_recordset_object.h"
#include "apps/host/vtable_object.h"
#include "platform/windows/wide_text.h"

namespace velk {

namespace {

/// Finds our own object from an interface pointer of it.
struct ConnectionAccess : IUnknown {
  virtual const std::shared_ptr<Connection>& STDMETHODCALLTYPE database() noexcept = 0;
};

}  // namespace

}  // namespace velk

// This interface is private: only the objects of this program answer it.
__CRT_UUID_DECL(velk::ConnectionAccess, 0x1B9F1D3C, 0x6C0E, 0x4E8B, 0x9A, 0x51, 0x37, 0x0C, 0x1E,
                0x84, 0x5F, 0x26)

namespace velk {

namespace {

class ConnectionObject final
    : public VtableObject<UnusedConnection, _Connection, ConnectionAccess> {
 public:
  explicit ConnectionObject(std::shared_ptr<Connection> connection)
      : connection_(std::move(connection)) {}

  HRESULT STDMETHODCALLTYPE get_State(LONG* state) noexcept override {
    return give(state, [&] { return connection_ == nullptr ? stateClosed : stateOpen; });
  }
  HRESULT STDMETHODCALLTYPE Execute(BSTR text, VARIANT*, LONG,
                                    _Recordset** rows) noexcept override {
    return give(rows, [&] {
      requireOpen();
      return recordsetObject(connection_->Execute(Bstr::textOf(text))).Detach();
    });
  }
  HRESULT STDMETHODCALLTYPE Close() noexcept override {
    return run([&] {
      requireOpen();
      connection_ = nullptr;
    });
  }

  const std::shared_ptr<Connection>& STDMETHODCALLTYPE database() noexcept override {
    return connection_;
  }

 private:
  void requireOpen() const {
    if (connection_ == nullptr) throw RuntimeError(ErrorNumber::ObjectClosed);
  }

  std::shared_ptr<Connection> connection_;
};

}  // namespace

ComPtr<_Connection> connectionObject(std::shared_ptr<Connection> connection) {
  return makeObject<ConnectionObject>(std::move(connection));
}

std::shared_ptr<Connection> connectionBehind(IUnknown* object) {
  // ADO's number for arguments of the wrong kind.
  constexpr std::int32_t wrongArguments = 3001;
  const auto access = queryInterface<ConnectionAccess>(object);
  if (!access) throw RuntimeError(wrongArguments, "The connection is of another library");
  if (access->database() == nullptr) throw RuntimeError(ErrorNumber::ConnectionInvalid);
  return access->database();
}

}  // namespace velk
