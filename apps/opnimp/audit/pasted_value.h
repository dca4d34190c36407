// Values of a file that are pasted into the text of a query.
#pragma once

#include <string_view>

namespace velk {

/// True for a look-up into which a value with a quote was pasted. What follows the quote would be
/// read as SQL, of which a server takes several statements at once.
bool pastesQuote(std::string_view query);

}  // namespace velk
