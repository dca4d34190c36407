// Messages with the address of a structure, sent to a window of another process.
#pragma once

#include <windows.h>

#include "base/errors.h"
#include "tests/tour/handles.h"

namespace velk {

/// A structure in the memory of the process that a window belongs to, and our copy of it. Messages
/// of common controls carry addresses as they are, and only that process can follow them.
template <class Structure>
class ForeignStructure {
 public:
  /// Error 7 when that process gives no memory.
  explicit ForeignStructure(HWND window) : window_(window) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    process_.reset(
        OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE, FALSE, process));
    there_ = static_cast<Structure*>(VirtualAllocEx(process_.get(), nullptr, sizeof(Structure),
                                                    MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
    if (there_ == nullptr) throw RuntimeError(ErrorNumber::OutOfMemory);
  }
  ~ForeignStructure() { VirtualFreeEx(process_.get(), there_, 0, MEM_RELEASE); }
  ForeignStructure(const ForeignStructure&) = delete;
  ForeignStructure& operator=(const ForeignStructure&) = delete;

  /// Where it lies in the other process, for pointers into itself.
  Structure* there() const { return there_; }

  /// Sends the message with the copy's values; the copy then holds what the window wrote.
  LRESULT send(UINT message, WPARAM wParam) {
    WriteProcessMemory(process_.get(), there_, &copy, sizeof copy, nullptr);
    const LRESULT answer = SendMessageW(window_, message, wParam, reinterpret_cast<LPARAM>(there_));
    ReadProcessMemory(process_.get(), there_, &copy, sizeof copy, nullptr);
    return answer;
  }

  Structure copy{};

 private:
  HWND window_;
  UniqueKernelObject process_;
  Structure* there_ = nullptr;
};

}  // namespace velk
