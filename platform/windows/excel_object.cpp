#include "platform/windows/excel_object.h"

#include "platform/windows/com_errors.h"

namespace velk {

namespace {

/// The call was not taken: by COM, or by the application itself, while a dialog is open or a cell
/// is edited.
bool isBusy(const RuntimeError& error) {
  // 0x800AC472 is VBA_E_IGNORE, the answer of the application itself.
  static const HRESULT results[] = {RPC_E_CALL_REJECTED, RPC_E_SERVERCALL_RETRYLATER,
                                    static_cast<HRESULT>(0x800AC472)};
  for (const HRESULT result : results) {
    // Compared as numbers of errors, which for 0x800A.... are the low word only.
    if (error.number() == comError(result).number()) return true;
  }
  return false;
}

}  // namespace

bool Patience::wait() {
  // Waiting is done here, because the message filter lets a refused call fail at once.
  constexpr unsigned pause = 200;
  constexpr unsigned longest = 10'000;
  if (waited_ >= longest) return false;
  Sleep(pause);
  waited_ += pause;
  return true;
}

Variant ExcelObject::invoke(std::string_view name, WORD kind,
                            const std::vector<Variant>& arguments) const {
  for (;;) {
    try {
      return callMember(object_.Get(), name, kind, arguments);
    } catch (const RuntimeError& error) {
      if (!isBusy(error) || !patience_->wait()) throw;
    }
  }
}

}  // namespace velk
