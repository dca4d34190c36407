#include "apps/opnimp/journal/crc32c.h"

#include <array>
#include <cstddef>

namespace velk {

namespace {

constexpr std::uint32_t polynomial = 0x82F63B78;  // its bits in reverse order
constexpr std::size_t sliceCount = 8;             // bytes that one step takes

using Table = std::array<std::array<std::uint32_t, 256>, sliceCount>;

// Row 0 takes one byte; row k takes a byte that k further ones follow.
constexpr Table makeTable() {
  Table table{};
  for (std::uint32_t byte = 0; byte < 256; ++byte) {
    std::uint32_t value = byte;
    for (int bit = 0; bit < 8; ++bit) value = (value >> 1) ^ ((value & 1) != 0 ? polynomial : 0);
    table[0][byte] = value;
  }
  for (std::size_t row = 1; row < sliceCount; ++row) {
    for (std::size_t byte = 0; byte < 256; ++byte) {
      const std::uint32_t before = table[row - 1][byte];
      table[row][byte] = (before >> 8) ^ table[0][before & 0xFF];
    }
  }
  return table;
}

constexpr Table table = makeTable();

}  // namespace

std::uint32_t crc32c(std::string_view bytes) {
  const auto at = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
  std::uint32_t value = ~0U;
  for (; bytes.size() >= sliceCount; bytes.remove_prefix(sliceCount)) {
    std::uint32_t next = 0;
    for (std::size_t i = 0; i < sliceCount; ++i) {
      const std::uint32_t mixed = i < 4 ? (value >> (8 * i)) & 0xFF : 0;
      next ^= table[sliceCount - 1 - i][at(i) ^ mixed];
    }
    value = next;
  }
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    value = (value >> 8) ^ table[0][(value ^ at(i)) & 0xFF];
  }
  return ~value;
}

}  // namespace velk
