// The checksum of the journal's entries: CRC-32C (Castagnoli), as iSCSI and ext4 use it.
#pragma once

#include <cstdint>
#include <string_view>

namespace velk {

/// Of the bytes behind those that `before` is the checksum of. By the processor's own instruction
/// where it has one.
std::uint32_t crc32c(std::string_view bytes, std::uint32_t before = 0);
std::uint32_t crc32cPlainly(std::string_view bytes, std::uint32_t before = 0);

}  // namespace velk
