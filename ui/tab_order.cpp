#include "ui/tab_order.h"

#include <algorithm>
#include <utility>

#include "ui/controls.h"

namespace velk {

namespace {

bool hasPlace(const Control* control) {
  return dynamic_cast<const Menu*>(control) == nullptr &&
         dynamic_cast<const CommonDialog*>(control) == nullptr;
}

// Controls of a row differ in height, so that only their middles are level.
void add(std::vector<Control*>& order, const Form& form, const Control* container) {
  std::vector<Control*> inside(form.controls().begin(), form.controls().end());
  std::erase_if(inside,
                [&](const Control* c) { return c->container() != container || !hasPlace(c); });
  std::ranges::stable_sort(inside, {}, [](const Control* control) {
    const Bounds at = control->bounds();
    // Wide: a host may have put it at the end of what a number holds.
    return std::pair(static_cast<long long>(at.top) + at.height / 2, at.left);
  });
  for (Control* control : inside) {
    order.push_back(control);
    add(order, form, control);
  }
}

}  // namespace

std::vector<Control*> orderOnScreen(const Form& form) {
  std::vector<Control*> order;
  add(order, form, nullptr);
  return order;
}

std::vector<Control*> tabOrder(const Form& form) {
  return form.ownTabOrder().empty() ? orderOnScreen(form) : form.ownTabOrder();
}

void setTabIndex(Form& form, Control& control, std::size_t index) {
  std::vector<Control*> order = tabOrder(form);
  std::erase(order, &control);
  order.insert(order.begin() + static_cast<std::ptrdiff_t>(std::min(index, order.size())),
               &control);
  form.setTabOrder(std::move(order));
}

}  // namespace velk
