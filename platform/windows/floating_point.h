// Floating-point exceptions while our code runs.
#pragma once

#include <xmmintrin.h>

#include <cstdint>

namespace velk {

/// Hosts may run with exceptions unmasked, where an inexact result would trap; while this lives
/// they are masked. Results are those of the host's rounding mode.
class MaskedFloatingPoint {
 public:
  MaskedFloatingPoint() : sse_(_mm_getcsr()) {
    _mm_setcsr(sse_ | _MM_MASK_MASK);
    __asm__ __volatile__("fnstcw %0" : "=m"(x87_));
    load(static_cast<std::uint16_t>(x87_ | allMasked));
  }
  ~MaskedFloatingPoint() {
    _mm_setcsr(sse_);
    load(x87_);
  }
  MaskedFloatingPoint(const MaskedFloatingPoint&) = delete;
  MaskedFloatingPoint& operator=(const MaskedFloatingPoint&) = delete;

 private:
  static constexpr std::uint16_t allMasked = 0x3F;

  // What is pending would trap at once when its exception is no longer masked.
  static void load(std::uint16_t control) {
    __asm__ __volatile__("fnclex\n\tfldcw %0" : : "m"(control));
  }

  unsigned sse_;
  std::uint16_t x87_ = 0;
};

}  // namespace velk
