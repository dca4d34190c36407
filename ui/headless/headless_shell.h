// Screens without a window: events are raised by calling the controls' user... members.
#pragma once

#include <functional>
#include <memory>
#include <span>
#include <vector>

#include "ui/form.h"

namespace velk {

class HeadlessShell final : public FormShell {
 public:
  void show(std::shared_ptr<Form> form) override { open_.push_back(std::move(form)); }
  void closed(Form& form) noexcept override {
    std::erase_if(open_, [&](const auto& open) { return open.get() == &form; });
  }
  Menu* popup(Menu& menu) override { return onPopup ? onPopup(menu) : nullptr; }

  /// The forms now shown, in the order of showing.
  std::span<const std::shared_ptr<Form>> open() const { return open_; }
  /// What the user picks from a popup menu; without it, nothing.
  std::function<Menu*(Menu&)> onPopup;

 private:
  std::vector<std::shared_ptr<Form>> open_;
};

}  // namespace velk
