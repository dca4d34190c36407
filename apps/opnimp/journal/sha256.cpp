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
Words schedule(const unsigned char* block) {
  Words w{};
  for (std::size_t i = 0; i < 16; ++i) {
    for (std::size_t byte = 0; byte < wordSize; ++byte) {
      w[i] = (w[i] << 8) | block[i * wordSize + byte];
    }
  }
  for (std::size_t i = 16; i < w.size(); ++i) {
    const std::uint32_t a = w[i - 15];
    const std::uint32_t b = w[i - 2];
    w[i] = w[i - 16] + w[i - 7] + (std::rotr(a, 7) ^ std::rotr(a, 18) ^ (a >> 3)) +
           (std::rotr(b, 17) ^ std::rotr(b, 19) ^ (b >> 10));
  }
  return w;
}

}  // namespace

void Sha256::takeBlock(const unsigned char* block) {
  const Words w = schedule(block);
  auto [a, b, c, d, e, f, g, h] = state_;
  for (std::size_t i = 0; i < w.size(); ++i) {
    const std::uint32_t t1 = h + (std::rotr(e, 6) ^ std::rotr(e, 11) ^ std::rotr(e, 25)) +
                             ((e & f) ^ (~e & g)) + K[i] + w[i];
    const std::uint32_t t2 =
        (std::rotr(a, 2) ^ std::rotr(a, 13) ^ std::rotr(a, 22)) + ((a & b) ^ (a & c) ^ (b & c));
    h = g;
    g = f;
    f = e;
    e = d + t1;
    d = c;
    c = b;
    b = a;
    a = t1 + t2;
  }
  const std::array<std::uint32_t, 8> sums{a, b, c, d, e, f, g, h};
  for (std::size_t i = 0; i < sums.size(); ++i) state_[i] += sums[i];
}

Sha256& Sha256::add(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::size_t used = length_ % blockSize;
    const std::size_t count = std::min(bytes.size(), blockSize - used);
    std::copy_n(bytes.data(), count, block_.begin() + static_cast<std::ptrdiff_t>(used));
    length_ += count;
    bytes.remove_prefix(count);
    if (length_ % blockSize == 0) takeBlock(block_.data());
  }
  return *this;
}

Digest Sha256::finish() {
  const std::uint64_t bits = length_ * 8;
  // A bit that is set, zeros, and the length at the end of a block.
  add("\x80");
  while (length_ % blockSize != blockSize - lengthSize) add(std::string_view("\0", 1));
  for (std::size_t byte = lengthSize; byte-- > 0;) {
    const auto value = static_cast<char>(bits >> (8 * byte));
    add({&value, 1});
  }
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
