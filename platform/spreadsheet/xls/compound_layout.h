// The layout of a compound file. Offsets are bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace velk::xls {

inline constexpr std::string_view signature{"\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8};

inline constexpr std::size_t headerSize = 512;
inline constexpr std::size_t headerSectorShift = 30;  // the size of sectors as a power of two
inline constexpr std::size_t headerFirstDirectory = 48;
inline constexpr std::size_t headerMiniCutoff = 56;
inline constexpr std::size_t headerFirstMiniTable = 60;
inline constexpr std::size_t headerFirstTableList = 68;
inline constexpr std::size_t headerTableLists = 72;
inline constexpr std::size_t headerTable = 76;  // the first 109 sectors of the sector table

inline constexpr std::size_t miniSectorSize = 64;
/// Shorter streams are in mini sectors; the header of every file says so.
inline constexpr std::uint32_t miniCutoff = 4096;

/// Numbers from here on name no sector.
inline constexpr std::uint32_t firstSpecialSector = 0xFFFFFFFA;
inline constexpr std::uint32_t tableListSector = 0xFFFFFFFC;
inline constexpr std::uint32_t tableSector = 0xFFFFFFFD;
inline constexpr std::uint32_t endOfChain = 0xFFFFFFFE;
inline constexpr std::uint32_t freeSector = 0xFFFFFFFF;

inline constexpr std::size_t entrySize = 128;
inline constexpr std::size_t entryNameLength = 64;
inline constexpr std::size_t entryType = 66;
inline constexpr std::uint8_t typeStream = 2;
inline constexpr std::uint8_t typeRoot = 5;

}  // namespace velk::xls
