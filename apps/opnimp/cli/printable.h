// Text for people: nothing from a file or database may steer a terminal.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "base/numbers.h"

namespace velk {

/// The text with control characters (also those that turn the direction of writing) as "\x1B" or
/// "\u202E", and bytes that are no UTF-8 as U+FFFD.
std::string printable(std::string_view text);

/// As printable, but carriage return + line feed pairs break the line.
std::string printableLines(std::string_view text);

/// What a driver says, as a part of a sentence of ours: without what ends it.
std::string_view withoutEnd(std::string_view sentence);

/// Number of characters (code points).
std::size_t textWidth(std::string_view text);
/// At most `width` characters, the last three of a longer text being "...".
std::string cutTo(std::string_view text, std::size_t width);
/// Filled with blanks to `width` characters, at the end or at the start.
std::string padRight(std::string text, std::size_t width);
std::string padLeft(std::string text, std::size_t width);

/// "1 record" or "2 records".
std::string counted(std::uint64_t number, std::string_view one, std::string_view many);
/// Separated by commas; of many the first ones.
std::string listed(std::span<const std::string> titles);
/// Two decimals, no separators; in 15 digits from 1e15 on.
std::string money(long double amount);
/// As money, with a comma before each group of three digits.
std::string groupedMoney(long double amount);

}  // namespace velk
