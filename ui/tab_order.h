// The order in which the Tab key goes through a form, unless code sets another.
#pragma once

#include <vector>

#include "ui/form.h"

namespace velk {

/// The controls as they stand on the screen, row by row; those of a frame follow it. Menus
/// and dialogs have no place and are not among them.
std::vector<Control*> orderOnScreen(const Form& form);

/// The order in which the Tab key reaches the controls that take it.
std::vector<Control*> tabOrder(const Form& form);

/// Moves a control to another place in that order, from 0 on; a large index means the end.
void setTabIndex(Form& form, Control& control, std::size_t index);

}  // namespace velk
