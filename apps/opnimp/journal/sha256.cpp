#include "apps/opnimp/journal/sha256.h"

#include <algorithm>

namespace velk {

namespace {

constexpr std::ptrdiff_t lengthSize = 8;  // of the length that ends the last block

template <class Number>
unsigned char* putBigEndian(unsigned char* to, Number number) {
  for (std::size_t byte = sizeof number; byte-- > 0;) {
    *to++ = static_cast<unsigned char>(number >> (8 * byte));
  }
  return to;
}

/// The fastest that there is.
void takeBlock(Sha256State& state, const unsigned char* block) {
  static const TakeSha256Block ofProcessor = sha256BlockOfProcessor();
  (ofProcessor != nullptr ? ofProcessor : takeSha256BlockPlainly)(state, block);
}

}  // namespace

// Whole blocks are taken where they stand.
Sha256& Sha256::add(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::size_t used = length_ % sha256BlockSize;
    const std::size_t count = std::min(bytes.size(), sha256BlockSize - used);
    const auto* const next = reinterpret_cast<const unsigned char*>(bytes.data());
    if (count == sha256BlockSize) {
      takeBlock(state_, next);
    } else {
      std::copy_n(next, count, block_.begin() + static_cast<std::ptrdiff_t>(used));
      if (used + count == sha256BlockSize) takeBlock(state_, block_.data());
    }
    length_ += count;
    bytes.remove_prefix(count);
  }
  return *this;
}

Digest Sha256::finish() {
  const std::uint64_t bits = length_ * 8;
  // A bit that is set, zeros, and the length at the end of a block.
  const auto rest = block_.begin() + static_cast<std::ptrdiff_t>(length_ % sha256BlockSize);
  *rest = 0x80;
  std::fill(rest + 1, block_.end(), '\0');
  if (block_.end() - rest <= lengthSize) {
    takeBlock(state_, block_.data());
    block_.fill(0);
  }
  putBigEndian(block_.end() - lengthSize, bits);
  takeBlock(state_, block_.data());
  Digest digest{};
  auto* to = digest.begin();
  for (const std::uint32_t word : state_) to = putBigEndian(to, word);
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
