// The last lines of a file, which may hold totals and no records.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "apps/opnimp/convert/layout.h"

namespace velk {

/// How many lines at the end look like no records: totals, by a word for it in their first value
/// (alone, or at its beginning in a line that has not the `width` of the titles) or by amounts
/// alone; a remark in a shorter line. No more than three; none if all lines do.
std::size_t countTotals(std::string_view text, const Layout& layout, std::size_t width);

/// The text without that many lines at its end; blank ones do not count. Raises UsageError if the
/// titles would be among them.
std::string_view withoutLastLines(std::string_view text, const Layout& layout, std::size_t count);

}  // namespace velk
