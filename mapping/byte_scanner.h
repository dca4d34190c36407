// Walks over the few bytes of a text that can matter to its structure, eight at a time.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace velk {

/// Stops at every byte below "-": NUL, carriage return, double quote and comma, and whatever else
/// stands there (blanks above all), which the caller passes over. Digits and letters, most of any
/// file, cost an eighth of a step each.
///
/// Behind the text stand at least eight NUL bytes, so that the scanner stops at the end of the text
/// and never reads beyond them.
class ByteScanner {
 public:
  explicit ByteScanner(char* start) { seek(start); }

  void seek(char* at) {
    word_ = at;
    found_ = belowDash(at);
  }

  char* next() {
    while (found_ == 0) seek(word_ + sizeof(std::uint64_t));
    char* const at = word_ + std::countr_zero(found_) / 8;
    found_ &= found_ - 1;
    return at;
  }

 private:
  static_assert(std::endian::native == std::endian::little, "the first byte is the lowest");

  // The high bit of each byte that is below 0x2D. With the high bits set no byte borrows from its
  // neighbour; bytes of 0x80 and above are taken out at the end.
  static std::uint64_t belowDash(const char* at) {
    constexpr std::uint64_t high = 0x8080808080808080;
    constexpr std::uint64_t dash = 0x2D2D2D2D2D2D2D2D;
    std::uint64_t word;
    std::memcpy(&word, at, sizeof word);
    return ~((word | high) - dash) & ~word & high;
  }

  char* word_ = nullptr;
  std::uint64_t found_ = 0;
};

}  // namespace velk
