// What a step of a procedure may be, where procedures are statements in a table of the database.
#pragma once

#include <string_view>

namespace velk {

/// Why a text is no step, as the rest of a sentence about it; empty for one statement that asks or
/// changes rows, and calls nothing that reaches beyond the database.
std::string_view faultOfStep(std::string_view sql);

}  // namespace velk
