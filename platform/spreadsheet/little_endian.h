// Numbers in files, lowest byte first, whatever the machine's order.
#pragma once

#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/spreadsheet/damage.h"

namespace velk {

template <std::unsigned_integral T>
T loadNumber(const char* from) {
  T value = 0;
  for (std::size_t i = 0; i < sizeof(T); ++i) {
    value = static_cast<T>(value | static_cast<T>(static_cast<unsigned char>(from[i])) << 8U * i);
  }
  return value;
}

template <std::unsigned_integral T>
void appendNumber(std::string& to, T value) {
  char bytes[sizeof(T)];
  for (std::size_t i = 0; i < sizeof(T); ++i) bytes[i] = static_cast<char>(value >> 8U * i);
  to.append(bytes, sizeof bytes);
}

/// Reads fields one after the other. A field that is not there is damage.
class FieldReader {
 public:
  explicit FieldReader(std::string_view bytes) : bytes_(bytes) {}

  std::uint8_t u8() { return take<std::uint8_t>(); }
  std::uint16_t u16() { return take<std::uint16_t>(); }
  std::uint32_t u32() { return take<std::uint32_t>(); }
  std::uint64_t u64() { return take<std::uint64_t>(); }
  double number() { return std::bit_cast<double>(u64()); }

  void skip(std::size_t count) { bytes(count); }
  std::string_view bytes(std::size_t count) {
    if (count > bytes_.size()) damaged("a record is too short");
    const std::string_view taken = bytes_.substr(0, count);
    bytes_.remove_prefix(count);
    return taken;
  }
  std::size_t left() const { return bytes_.size(); }
  /// Damage when there is more than was read.
  void finish() const {
    if (left() > 0) damaged("a record is too long");
  }

 private:
  template <std::unsigned_integral T>
  T take() {
    return loadNumber<T>(bytes(sizeof(T)).data());
  }

  std::string_view bytes_;
};

}  // namespace velk
