// Shows forms as windows of the calling thread, modeless, inside the host's own message loop.
#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <vector>

#include "platform/windows/handles.h"
#include "ui/form_shell.h"

namespace velk {

class FormWindow;

class WindowShell final : public FormShell {
 public:
  /// `keeper` gives what has to live as long as a window; it may contain the shell itself.
  explicit WindowShell(std::function<std::shared_ptr<void>()> keeper);
  ~WindowShell() override;
  WindowShell(const WindowShell&) = delete;
  WindowShell& operator=(const WindowShell&) = delete;

  void show(std::shared_ptr<Form> form) override;
  void closed(Form& form) noexcept override;
  Menu* popup(Menu& menu) override;

 private:
  using Windows = std::vector<std::shared_ptr<FormWindow>>;
  Windows::iterator find(const Form& form);
  void hook();
  void unhook() noexcept;

  std::function<std::shared_ptr<void>()> keeper_;
  Windows windows_;
  UniqueHook hook_;
};

}  // namespace velk
