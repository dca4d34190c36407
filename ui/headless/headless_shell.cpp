#include "ui/headless/headless_shell.h"

namespace velk {

void HeadlessShell::closed(Form& form) noexcept {
  std::erase_if(open_, [&](const auto& open) { return open.get() == &form; });
}

}  // namespace velk
