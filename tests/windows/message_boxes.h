// Answers the message boxes of this thread, and keeps what they said; and its file dialogs.
#pragma once

#include <windows.h>

#include <commdlg.h>

#include <functional>
#include <string>
#include <utility>

#include "tests/support/checks.h"
#include "tests/windows/screen_windows.h"

namespace velk {

class MessageBoxes {
 public:
  MessageBoxes() {
    current() = this;
    hook_ = SetWindowsHookExW(WH_CALLWNDPROCRET, onMessage, nullptr, GetCurrentThreadId());
    REQUIRE(hook_ != nullptr);
  }
  ~MessageBoxes() {
    UnhookWindowsHookEx(hook_);
    current() = nullptr;
  }
  MessageBoxes(const MessageBoxes&) = delete;
  MessageBoxes& operator=(const MessageBoxes&) = delete;

  /// "caption|text|button..." of each, without the "&" of mnemonics.
  const Texts& shown() const { return shown_; }
  /// What is typed into file dialogs.
  void chooseFile(std::string path) { path_ = std::move(path); }
  /// The one that the last file dialog started in.
  const std::string& folder() const { return folder_; }
  std::function<void()> onShown;   ///< runs while a box is shown, before its button is pressed
  std::function<void()> onDialog;  ///< runs while a file dialog is open, before it gets its answer

 private:
  static MessageBoxes*& current() {
    thread_local MessageBoxes* boxes = nullptr;
    return boxes;
  }

  // When a dialog has been set up, its texts are there.
  static LRESULT CALLBACK onMessage(int code, WPARAM sender, LPARAM details) {
    const auto& message = *reinterpret_cast<const CWPRETSTRUCT*>(details);
    if (code == HC_ACTION && message.message == WM_INITDIALOG) current()->answer(message.hwnd);
    return CallNextHookEx(nullptr, code, sender, details);
  }

  void answer(HWND box) {
    constexpr int fileName = 0x47C;
    if (GetDlgItem(box, fileName) == nullptr) return answerMessage(box);
    wchar_t folder[MAX_PATH] = L"";
    SendMessageW(box, CDM_GETFOLDERPATH, MAX_PATH, reinterpret_cast<LPARAM>(folder));
    folder_ = fromWide(folder);
    if (onDialog) onDialog();
    SetDlgItemTextW(box, fileName, toWide(path_).c_str());
    PostMessageW(box, WM_COMMAND, IDOK, 0);
  }

  // Presses the first button.
  void answerMessage(HWND box) {
    std::string all = textOf(box) + '|' + textOf(GetDlgItem(box, messageId));
    WPARAM first = 0;
    for (HWND child = GetWindow(box, GW_CHILD); child != nullptr;
         child = GetWindow(child, GW_HWNDNEXT)) {
      const bool isVisible = (GetWindowLongW(child, GWL_STYLE) & WS_VISIBLE) != 0;
      if (!isVisible || !isOfClass(child, L"Button")) continue;
      std::string caption = textOf(child);
      std::erase(caption, '&');
      all += '|' + caption;
      if (first == 0) first = static_cast<WPARAM>(GetDlgCtrlID(child));
    }
    if (first == 0) return;
    shown_.push_back(all);
    if (onShown) onShown();
    PostMessageW(box, WM_COMMAND, first, 0);
  }

  static constexpr int messageId = 0xFFFF;
  HHOOK hook_;
  Texts shown_;
  std::string path_;
  std::string folder_;
};

}  // namespace velk
