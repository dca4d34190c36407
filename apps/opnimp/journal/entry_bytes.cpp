#include "apps/opnimp/journal/entry_bytes.h"

#include <bit>
#include <utility>

#include "base/errors.h"

namespace velk {

EntryWriter& EntryWriter::longNumber(std::uint64_t value) {
  for (; value >= moreFollows; value >>= groupBits) {
    byte(static_cast<std::uint8_t>(value | moreFollows));
  }
  return byte(static_cast<std::uint8_t>(value));
}

EntryWriter& EntryWriter::real(double value) {
  const auto bits = std::bit_cast<std::uint64_t>(value);
  char* const to = room(sizeof bits);
  for (std::size_t i = 0; i < sizeof bits; ++i) to[i] = static_cast<char>(bits >> (8 * i));
  return *this;
}

EntryWriter& EntryWriter::text(std::string_view text) {
  return number(text.size()).bytes(text);
}

// The kind of value comes first, in the order of Value's alternatives.
EntryWriter& EntryWriter::value(const Value& value) {
  byte(static_cast<std::uint8_t>(value.index()));
  if (const auto* integer = std::get_if<std::int32_t>(&value)) {
    return number(static_cast<std::uint32_t>(*integer));
  }
  if (const auto* number = std::get_if<double>(&value)) return real(*number);
  if (const auto* date = std::get_if<Date>(&value)) return real(date->days);
  if (const auto* string = std::get_if<std::string>(&value)) return text(*string);
  return *this;
}

std::uint8_t EntryReader::byte() {
  return static_cast<std::uint8_t>(bytes(1).front());
}

std::uint64_t EntryReader::number() {
  std::uint64_t value = 0;
  for (unsigned shift = 0; shift < 64; shift += groupBits) {
    const std::uint8_t group = byte();
    value |= std::uint64_t{group & (moreFollows - 1U)} << shift;
    if (group < moreFollows) return value;
  }
  throw RuntimeError(ErrorNumber::InvalidFileFormat);
}

std::size_t EntryReader::count() {
  const std::uint64_t value = number();
  if (!std::in_range<std::size_t>(value)) throw RuntimeError(ErrorNumber::InvalidFileFormat);
  return static_cast<std::size_t>(value);
}

double EntryReader::real() {
  std::uint64_t bits = 0;
  for (unsigned shift = 0; shift < 64; shift += 8) bits |= std::uint64_t{byte()} << shift;
  return std::bit_cast<double>(bits);
}

std::string_view EntryReader::bytes(std::uint64_t count) {
  if (count > rest_.size()) throw RuntimeError(ErrorNumber::InvalidFileFormat);
  const std::string_view bytes = rest_.substr(0, static_cast<std::size_t>(count));
  rest_.remove_prefix(bytes.size());
  return bytes;
}

Value EntryReader::value() {
  switch (byte()) {
    case 0:
      return Null();
    case 1:
      return static_cast<std::int32_t>(static_cast<std::uint32_t>(number()));
    case 2:
      return real();
    case 3:
      return Date{real()};
    case 4:
      return text();
    default:
      throw RuntimeError(ErrorNumber::InvalidFileFormat);
  }
}

}  // namespace velk
