#include "platform/windows/taskbar_button.h"

namespace velk {

TaskbarProgress::TaskbarProgress(HWND window) : window_(window) {
  const HRESULT made = CoCreateInstance(CLSID_TaskbarList, nullptr, CLSCTX_INPROC_SERVER,
                                        IID_PPV_ARGS(taskbar_.GetAddressOf()));
  if (FAILED(made) || FAILED(taskbar_->HrInit())) taskbar_.Reset();
}

TaskbarProgress::~TaskbarProgress() {
  if (taskbar_) taskbar_->SetProgressState(window_, TBPF_NOPROGRESS);
}

void TaskbarProgress::show(std::size_t done, std::size_t total) const {
  if (!taskbar_) return;
  if (total == 0) {
    taskbar_->SetProgressState(window_, TBPF_INDETERMINATE);
  } else {
    taskbar_->SetProgressValue(window_, done, total);
  }
}

}  // namespace velk
