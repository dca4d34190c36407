// Numbers in texts that users wrote.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace velk {

/// The leading-number rule: blanks (U+0020) at the start are skipped, then the longest run that
/// reads as a number is taken: sign, digits, one point, digits, and an exponent behind E or D in
/// either letter case. Text without such a run gives 0; no hexadecimal, no thousands separators, no
/// locale. Error 6 when the number is beyond a double's range; one too small for it gives 0.
double leadingNumber(std::string_view text);

/// A text that is a number from end to end but for blanks around it, by the same rule; nothing
/// where anything is left over.
std::optional<double> wholeNumber(std::string_view text);

/// Error 6 when the number does not fit 16 bits; else the number.
std::int16_t toInt16(std::int64_t number);

}  // namespace velk
