// Finds the few bytes of a text that matter to its structure, sixty-four at a time.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace velk {

/// Stops at every NUL, carriage return, double quote and comma. A byte of anything else costs next
/// to nothing: one mask tells all stops of a block, and no branch depends on what is between them.
///
/// At least `blockSize` NUL bytes follow the text, so that the scanner stops at the end of
/// the text and never reads beyond them.
class ByteScanner {
 public:
  static constexpr std::size_t blockSize = 64;

  explicit ByteScanner(char* start) { seek(start); }

  void seek(char* at) {
    block_ = at;
    found_ = stops(at);
  }

  char* next() {
    while (found_ == 0) seek(block_ + blockSize);
    char* const at = block_ + std::countr_zero(found_);
    found_ &= found_ - 1;
    return at;
  }

 private:
#ifdef __SSE2__
  // Bit n is set for a stop at byte n.
  static std::uint64_t stops(const char* at) {
    std::uint64_t found = 0;
    for (int part = 0; part < 4; ++part) {
      const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at) + part);
      const auto equal = [&](char c) { return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(c)); };
      const __m128i hits = _mm_or_si128(_mm_or_si128(equal(','), equal('\r')),
                                        _mm_or_si128(equal('"'), equal('\0')));
      found |= std::uint64_t{static_cast<std::uint16_t>(_mm_movemask_epi8(hits))} << (16 * part);
    }
    return found;
  }
#else
  static std::uint64_t stops(const char* at) {
    std::uint64_t found = 0;
    for (std::size_t i = 0; i < blockSize; ++i) {
      const char c = at[i];
      const bool stop = c == ',' || c == '\r' || c == '"' || c == '\0';
      found |= std::uint64_t{stop} << i;
    }
    return found;
  }
#endif

  char* block_ = nullptr;
  std::uint64_t found_ = 0;
};

}  // namespace velk
