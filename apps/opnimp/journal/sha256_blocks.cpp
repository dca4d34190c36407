#include "apps/opnimp/journal/sha256_blocks.h"

#include <bit>
#ifdef __x86_64__
#include <cpuid.h>
#include <immintrin.h>
#endif

namespace velk {

namespace {

// The names are those of the standard that defines the function, FIPS 180-4.
constexpr std::array<std::uint32_t, 64> K{
    0x428A2F98, 0x71374491, 0xB5C0FBCF, 0xE9B5DBA5, 0x3956C25B, 0x59F111F1, 0x923F82A4, 0xAB1C5ED5,
    0xD807AA98, 0x12835B01, 0x243185BE, 0x550C7DC3, 0x72BE5D74, 0x80DEB1FE, 0x9BDC06A7, 0xC19BF174,
    0xE49B69C1, 0xEFBE4786, 0x0FC19DC6, 0x240CA1CC, 0x2DE92C6F, 0x4A7484AA, 0x5CB0A9DC, 0x76F988DA,
    0x983E5152, 0xA831C66D, 0xB00327C8, 0xBF597FC7, 0xC6E00BF3, 0xD5A79147, 0x06CA6351, 0x14292967,
    0x27B70A85, 0x2E1B2138, 0x4D2C6DFC, 0x53380D13, 0x650A7354, 0x766A0ABB, 0x81C2C92E, 0x92722C85,
    0xA2BFE8A1, 0xA81A664B, 0xC24B8B70, 0xC76C51A3, 0xD192E819, 0xD6990624, 0xF40E3585, 0x106AA070,
    0x19A4C116, 0x1E376C08, 0x2748774C, 0x34B0BCB5, 0x391C0CB3, 0x4ED8AA4A, 0x5B9CCA4F, 0x682E6FF3,
    0x748F82EE, 0x78A5636F, 0x84C87814, 0x8CC70208, 0x90BEFFFA, 0xA4506CEB, 0xBEF9A3F7, 0xC67178F2};

using Words = std::array<std::uint32_t, K.size()>;

// The most significant byte comes first.
std::uint32_t wordAt(const unsigned char* bytes) {
  return (std::uint32_t{bytes[0]} << 24) | (std::uint32_t{bytes[1]} << 16) |
         (std::uint32_t{bytes[2]} << 8) | bytes[3];
}

Words schedule(const unsigned char* block) {
  Words w;
  for (std::size_t i = 0; i < 16; ++i) w[i] = wordAt(block + i * sha256WordSize);
  for (std::size_t i = 16; i < w.size(); ++i) {
    const std::uint32_t a = w[i - 15];
    const std::uint32_t b = w[i - 2];
    w[i] = w[i - 16] + w[i - 7] + (std::rotr(a, 7) ^ std::rotr(a, 18) ^ (a >> 3)) +
           (std::rotr(b, 17) ^ std::rotr(b, 19) ^ (b >> 10));
  }
  return w;
}

}  // namespace

// Eight steps at a time: after them each variable has its own value again, so that none is moved.
void takeSha256BlockPlainly(Sha256State& state, const unsigned char* block) {
  const Words w = schedule(block);
  auto [a, b, c, d, e, f, g, h] = state;
  std::size_t i = 0;
  const auto step = [&](std::uint32_t a_, std::uint32_t b_, std::uint32_t c_, std::uint32_t& d_,
                        std::uint32_t e_, std::uint32_t f_, std::uint32_t g_, std::uint32_t& h_) {
    h_ += (std::rotr(e_, 6) ^ std::rotr(e_, 11) ^ std::rotr(e_, 25)) + (g_ ^ (e_ & (f_ ^ g_))) +
          K[i] + w[i];
    d_ += h_;
    h_ +=
        (std::rotr(a_, 2) ^ std::rotr(a_, 13) ^ std::rotr(a_, 22)) + ((a_ & b_) | (c_ & (a_ | b_)));
    ++i;
  };
  while (i < w.size()) {
    step(a, b, c, d, e, f, g, h);
    step(h, a, b, c, d, e, f, g);
    step(g, h, a, b, c, d, e, f);
    step(f, g, h, a, b, c, d, e);
    step(e, f, g, h, a, b, c, d);
    step(d, e, f, g, h, a, b, c);
    step(c, d, e, f, g, h, a, b);
    step(b, c, d, e, f, g, h, a);
  }
  const Sha256State sums{a, b, c, d, e, f, g, h};
  for (std::size_t k = 0; k < sums.size(); ++k) state[k] += sums[k];
}

#ifdef __x86_64__

namespace {

// Four steps at a time. The instructions keep the state in two registers, of a, b, e, f and of c,
// d, g, h.
__attribute__((target("sha,sse4.1"))) void takeByInstructions(Sha256State& state,
                                                              const unsigned char* block) {
  const auto signedOf = [&](std::size_t i) { return static_cast<int>(state[i]); };
  const auto load = [](const void* from) {
    return _mm_loadu_si128(static_cast<const __m128i*>(from));
  };
  const __m128i firstByteHighest =
      _mm_set_epi8(12, 13, 14, 15, 8, 9, 10, 11, 4, 5, 6, 7, 0, 1, 2, 3);
  __m128i abef = _mm_set_epi32(signedOf(0), signedOf(1), signedOf(4), signedOf(5));
  __m128i cdgh = _mm_set_epi32(signedOf(2), signedOf(3), signedOf(6), signedOf(7));
  const __m128i abefBefore = abef;
  const __m128i cdghBefore = cdgh;
  __m128i w[4];
  for (std::size_t i = 0; i < K.size() / 4; ++i) {
    __m128i& now = w[i % 4];
    if (i < 4) {
      now = _mm_shuffle_epi8(load(block + i * sizeof now), firstByteHighest);
    } else {
      const __m128i last = w[(i + 3) % 4];
      now = _mm_sha256msg1_epu32(now, w[(i + 1) % 4]);
      now = _mm_add_epi32(now, _mm_alignr_epi8(last, w[(i + 2) % 4], sha256WordSize));
      now = _mm_sha256msg2_epu32(now, last);
    }
    const __m128i sum = _mm_add_epi32(now, load(&K[i * 4]));
    cdgh = _mm_sha256rnds2_epu32(cdgh, abef, sum);
    abef = _mm_sha256rnds2_epu32(abef, cdgh, _mm_shuffle_epi32(sum, 0x0E));
  }
  std::array<std::uint32_t, 4> fe{};
  std::array<std::uint32_t, 4> hg{};
  _mm_storeu_si128(reinterpret_cast<__m128i*>(fe.data()), _mm_add_epi32(abef, abefBefore));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(hg.data()), _mm_add_epi32(cdgh, cdghBefore));
  state = {fe[3], fe[2], hg[3], hg[2], fe[1], fe[0], hg[1], hg[0]};
}

}  // namespace

// Where the processor tells of them: the bits of its own description.
TakeSha256Block sha256BlockOfProcessor() {
  constexpr unsigned sse41 = 1U << 19;
  constexpr unsigned sha = 1U << 29;
  unsigned eax = 0;
  unsigned ebx = 0;
  unsigned ecx = 0;
  unsigned edx = 0;
  if (__get_cpuid(1, &eax, &ebx, &ecx, &edx) == 0 || (ecx & sse41) == 0) return nullptr;
  if (__get_cpuid_count(7, 0, &eax, &ebx, &ecx, &edx) == 0) return nullptr;
  return (ebx & sha) != 0 ? takeByInstructions : nullptr;
}

#else

TakeSha256Block sha256BlockOfProcessor() {
  return nullptr;
}

#endif

}  // namespace velk
