// The inner work of SHA-256: a block of 64 bytes taken into the state.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace velk {

inline constexpr std::size_t sha256BlockSize = 64;
inline constexpr std::size_t sha256WordSize = 4;
using Sha256State = std::array<std::uint32_t, 8>;
using TakeSha256Block = void (*)(Sha256State& state, const unsigned char* block);

void takeSha256BlockPlainly(Sha256State& state, const unsigned char* block);
/// The same by the processor's own instructions for it; null where it has none.
TakeSha256Block sha256BlockOfProcessor();

}  // namespace velk
