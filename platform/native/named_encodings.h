// Encodings by the names that the machine's library knows them by.
#pragma once

#include <string>
#include <string_view>

namespace velk {

bool knowsEncoding(const std::string& name);

/// As UTF-8, with U+FFFD for what is none of that encoding. The name is one that is known.
std::string decodeNamed(const std::string& name, std::string_view bytes);

}  // namespace velk
