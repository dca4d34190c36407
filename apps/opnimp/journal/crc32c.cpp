#include "apps/opnimp/journal/crc32c.h"

#include <array>
#include <cstddef>
#include <cstring>
#ifdef __x86_64__
#include <cpuid.h>
#include <immintrin.h>
#endif

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

/// Takes the bytes into the remainder so far.
using Take = std::uint32_t (*)(std::uint32_t remainder, std::string_view bytes);

std::uint32_t takePlainly(std::uint32_t remainder, std::string_view bytes) {
  const auto at = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
  for (; bytes.size() >= sliceCount; bytes.remove_prefix(sliceCount)) {
    std::uint32_t next = 0;
    for (std::size_t i = 0; i < sliceCount; ++i) {
      const std::uint32_t mixed = i < 4 ? (remainder >> (8 * i)) & 0xFF : 0;
      next ^= table[sliceCount - 1 - i][at(i) ^ mixed];
    }
    remainder = next;
  }
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    remainder = (remainder >> 8) ^ table[0][(remainder ^ at(i)) & 0xFF];
  }
  return remainder;
}

#ifdef __x86_64__

__attribute__((target("sse4.2"))) std::uint32_t takeByInstruction(std::uint32_t remainder,
                                                                  std::string_view bytes) {
  std::uint64_t wide = remainder;
  for (; bytes.size() >= sizeof wide; bytes.remove_prefix(sizeof wide)) {
    std::uint64_t next = 0;
    std::memcpy(&next, bytes.data(), sizeof next);
    wide = _mm_crc32_u64(wide, next);
  }
  remainder = static_cast<std::uint32_t>(wide);
  for (const char byte : bytes) {
    remainder = _mm_crc32_u8(remainder, static_cast<unsigned char>(byte));
  }
  return remainder;
}

// The bit of the processor's own description.
bool hasInstruction() {
  constexpr unsigned sse42 = 1U << 20;
  unsigned eax = 0;
  unsigned ebx = 0;
  unsigned ecx = 0;
  unsigned edx = 0;
  return __get_cpuid(1, &eax, &ebx, &ecx, &edx) != 0 && (ecx & sse42) != 0;
}

const Take takeQuickly = hasInstruction() ? takeByInstruction : takePlainly;

#else

constexpr Take takeQuickly = takePlainly;

#endif

}  // namespace

std::uint32_t crc32c(std::string_view bytes, std::uint32_t before) {
  return ~takeQuickly(~before, bytes);
}

std::uint32_t crc32cPlainly(std::string_view bytes, std::uint32_t before) {
  return ~takePlainly(~before, bytes);
}

}  // namespace velk
