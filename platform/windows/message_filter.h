// What happens when another program is too busy for a call of this thread.
#pragma once

#include <ole2.h>

#include "platform/windows/com_pointer.h"

namespace velk {

/// While it lives, such a call fails at once (RPC_E_CALL_REJECTED, RPC_E_SERVERCALL_RETRYLATER);
/// the host's own filter may ask the user instead. Calls that come in go where they went before.
class QuietMessageFilter {
 public:
  QuietMessageFilter();
  ~QuietMessageFilter();
  QuietMessageFilter(const QuietMessageFilter&) = delete;
  QuietMessageFilter& operator=(const QuietMessageFilter&) = delete;

 private:
  ComPtr<IMessageFilter> previous_;
  bool registered_;
};

}  // namespace velk
