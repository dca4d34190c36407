#include "apps/opnimp/journal/sha256.h"

#include <algorithm>
#include <bit>

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

constexpr std::size_t wordSize = 4;
constexpr std::size_t lengthSize = 8;  // of the length that ends the last block

using Words = std::array<std::uint32_t, K.size()>;

// The most significant byte comes first.
std::uint32_t wordAt(const unsigned char* bytes) {
  return (std::uint32_t{bytes[0]} << 24) | (std::uint32_t{bytes[1]} << 16) |
         (std::uint32_t{bytes[2]} << 8) | bytes[3];
}

Words schedule(const unsigned char* block) {
  Words w;
  for (std::size_t i = 0; i < 16; ++i) w[i] = wordAt(block + i * wordSize);
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
void Sha256::takeBlock(const unsigned char* block) {
  const Words w = schedule(block);
  auto [a, b, c, d, e, f, g, h] = state_;
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
  const std::array<std::uint32_t, 8> sums{a, b, c, d, e, f, g, h};
  for (std::size_t k = 0; k < sums.size(); ++k) state_[k] += sums[k];
}

// Whole blocks are taken where they stand.
Sha256& Sha256::add(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::size_t used = length_ % blockSize;
    const std::size_t count = std::min(bytes.size(), blockSize - used);
    const auto* const next = reinterpret_cast<const unsigned char*>(bytes.data());
    if (count == blockSize) {
      takeBlock(next);
    } else {
      std::copy_n(next, count, block_.begin() + static_cast<std::ptrdiff_t>(used));
      if (used + count == blockSize) takeBlock(block_.data());
    }
    length_ += count;
    bytes.remove_prefix(count);
  }
  return *this;
}

Digest Sha256::finish() {
  const std::uint64_t bits = length_ * 8;
  // A bit that is set, zeros, and the length at the end of a block.
  std::array<char, blockSize + lengthSize> padding{'\x80'};
  const std::size_t zeros = (2 * blockSize - lengthSize - 1 - length_ % blockSize) % blockSize;
  for (std::size_t byte = 0; byte < lengthSize; ++byte) {
    padding[1 + zeros + byte] = static_cast<char>(bits >> (8 * (lengthSize - 1 - byte)));
  }
  add({padding.data(), 1 + zeros + lengthSize});
  Digest digest{};
  for (std::size_t i = 0; i < digest.size(); ++i) {
    digest[i] = static_cast<unsigned char>(state_[i / wordSize] >> (24 - 8 * (i % wordSize)));
  }
  return digest;
}

std::string hexText(const Digest& digest) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string text;
  for (const unsigned char byte : digest) {
    text += digits[byte >> 4];
    text += digits[byte & 15];
  }
  return text;
}

}  // namespace velk
