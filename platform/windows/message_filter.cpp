#include "platform/windows/message_filter.h"

#include "platform/windows/com_object.h"

namespace velk {

namespace {

class Filter final : public ComObject<IMessageFilter> {
 public:
  void forwardTo(ComPtr<IMessageFilter> previous) { previous_ = std::move(previous); }

  DWORD STDMETHODCALLTYPE HandleInComingCall(DWORD kind, HTASK caller, DWORD elapsed,
                                             INTERFACEINFO* what) noexcept override {
    if (!previous_) return SERVERCALL_ISHANDLED;  // what COM does without a filter
    return previous_->HandleInComingCall(kind, caller, elapsed, what);
  }
  DWORD STDMETHODCALLTYPE RetryRejectedCall(HTASK, DWORD, DWORD) noexcept override {
    // The caller waits and tries again itself; the host's filter might ask the user about a program
    // that the user does not see.
    constexpr DWORD cancel = 0xFFFFFFFF;
    return cancel;
  }
  DWORD STDMETHODCALLTYPE MessagePending(HTASK, DWORD, DWORD) noexcept override {
    // Again what COM does without a filter.
    return PENDINGMSG_WAITDEFPROCESS;
  }

 private:
  ComPtr<IMessageFilter> previous_;
};

}  // namespace

QuietMessageFilter::QuietMessageFilter() {
  const auto filter = makeObject<Filter>();
  registered_ = CoRegisterMessageFilter(filter.Get(), previous_.GetAddressOf()) == S_OK;
  // Only now: the registration is what tells the filter before this one.
  filter->forwardTo(previous_);
}

QuietMessageFilter::~QuietMessageFilter() {
  ComPtr<IMessageFilter> own;
  // Without a registration of ours this call would remove the filter of the host.
  if (registered_) CoRegisterMessageFilter(previous_.Get(), own.GetAddressOf());
}

}  // namespace velk
