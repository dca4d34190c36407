// The order in which the Tab key goes through a form, unless code sets another.
#pragma once

#include <vector>

#include "ui/form.h"

namespace velk {

/// The controls as they stand on the screen, row by row; those of a frame follow it. Menus
/// and dialogs have no place and are not among them.
std::vector<Control*> orderOnScreen(const Form& form);

}  // namespace velk
