#include "apps/opnimp/journal/sha256.h"

#include <algorithm>

namespace velk {

namespace {

constexpr std::size_t lengthSize = 8;  // of the length that ends the last block

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
  std::array<char, sha256BlockSize + lengthSize> padding{'\x80'};
  const std::size_t zeros =
      (2 * sha256BlockSize - lengthSize - 1 - length_ % sha256BlockSize) % sha256BlockSize;
  for (std::size_t byte = 0; byte < lengthSize; ++byte) {
    padding[1 + zeros + byte] = static_cast<char>(bits >> (8 * (lengthSize - 1 - byte)));
  }
  add({padding.data(), 1 + zeros + lengthSize});
  Digest digest{};
  for (std::size_t i = 0; i < digest.size(); ++i) {
    digest[i] =
        static_cast<unsigned char>(state_[i / sha256WordSize] >> (24 - 8 * (i % sha256WordSize)));
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
