// Texts in a page of HTML.
#pragma once

#include <string>
#include <string_view>

namespace velk {

/// The text as it reads on a page, in an element or in an attribute's double quotes: nothing in it
/// is markup, steers the direction of writing or is invisible; see printable().
std::string html(std::string_view text);

}  // namespace velk
