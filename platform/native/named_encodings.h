// Encodings by the names that the machine's library knows them by.
#pragma once

#include <string>
#include <string_view>

namespace velk {

bool knowsEncoding(const std::string& name);

/// As UTF-8, with U+FFFD for what is none of that encoding. The name is one that is known.
std::string decodeNamed(const std::string& name, std::string_view bytes);

/// By how often letters stand where: the encoding of single bytes that these words, with letters
/// beyond ASCII, are in rather than in windows-1252; empty where that says nothing.
std::string preferredEncoding(std::string_view words);

}  // namespace velk
