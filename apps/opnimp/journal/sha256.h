// SHA-256, by which the journal knows files and records again.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "apps/opnimp/journal/sha256_blocks.h"

namespace velk {

using Digest = std::array<unsigned char, 32>;

class Sha256 {
 public:
  Sha256& add(std::string_view bytes);
  /// Of everything added; nothing may be added after it.
  Digest finish();

 private:
  Sha256State state_{0x6A09E667, 0xBB67AE85, 0x3C6EF372, 0xA54FF53A,
                     0x510E527F, 0x9B05688C, 0x1F83D9AB, 0x5BE0CD19};
  std::array<unsigned char, sha256BlockSize> block_{};  // the bytes that fill no block yet
  std::uint64_t length_ = 0;
};

/// In lower-case hexadecimal, as sha256sum prints it.
std::string hexText(const Digest& digest);

}  // namespace velk
