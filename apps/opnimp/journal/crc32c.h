// The checksum of the journal's entries: CRC-32C (Castagnoli), as iSCSI and ext4 use it.
#pragma once

#include <cstdint>
#include <string_view>

namespace velk {

/// By the processor's own instruction where it has one.
std::uint32_t crc32c(std::string_view bytes);
std::uint32_t crc32cPlainly(std::string_view bytes);

}  // namespace velk
