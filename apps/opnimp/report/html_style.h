// How the report looks as a page: on a narrow and a wide screen, light and dark, and on paper.
#pragma once

#include <string_view>

namespace velk {

extern const std::string_view htmlStyle;

}  // namespace velk
