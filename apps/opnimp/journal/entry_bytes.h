// Values as the bytes of an entry: numbers with their least significant byte first, texts behind
// their length.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/values.h"

namespace velk {

/// Of a number: how many bits a byte has of it, and the mark of one that is not the last.
inline constexpr unsigned groupBits = 7;
inline constexpr std::uint8_t moreFollows = 0x80;

class EntryWriter {
 public:
  EntryWriter& byte(std::uint8_t value) {
    *room(1) = static_cast<char>(value);
    return *this;
  }
  /// Seven bits a byte, because most numbers are small.
  EntryWriter& number(std::uint64_t value) {
    if (value < moreFollows) return byte(static_cast<std::uint8_t>(value));
    return longNumber(value);
  }
  EntryWriter& real(double value);
  EntryWriter& text(std::string_view text);
  /// Without a length.
  EntryWriter& bytes(std::string_view bytes) {
    bytes.copy(room(bytes.size()), bytes.size());
    return *this;
  }
  EntryWriter& value(const Value& value);

  /// The number of the items, and each by `write(*this, item)`.
  template <class Items, class Write>
  EntryWriter& list(const Items& items, Write write) {
    number(items.size());
    for (const auto& item : items) write(*this, item);
    return *this;
  }

  std::string_view payload() const { return {buffer_.data(), length_}; }
  void clear() { length_ = 0; }
  /// Makes room for as many bytes in all.
  void reserve(std::size_t count) {
    if (count > buffer_.size()) buffer_.resize(count);
  }

 private:
  EntryWriter& longNumber(std::uint64_t value);
  /// Where the next bytes, so many, go.
  char* room(std::size_t count) {
    if (count > buffer_.size() - length_) reserve(2 * length_ + count);
    length_ += count;
    return buffer_.data() + length_ - count;
  }

  std::string buffer_;
  std::size_t length_ = 0;  // of the payload in it
};

/// Reading beyond the end, or what no writer writes, is error 321.
class EntryReader {
 public:
  explicit EntryReader(std::string_view payload) : rest_(payload) {}

  std::uint8_t byte();
  std::uint64_t number();
  /// A number that counts or numbers something in memory; one that cannot is error 321.
  std::size_t count();
  double real();
  std::string text() { return std::string(bytes(number())); }
  std::string_view bytes(std::uint64_t count);
  Value value();
  /// Nothing follows, as where an earlier version wrote less.
  bool isAtEnd() const { return rest_.empty(); }

  template <class Item, class Read>
  std::vector<Item> list(Read read) {
    std::vector<Item> items;
    for (std::uint64_t left = number(); left > 0; --left) items.push_back(read(*this));
    return items;
  }

 private:
  std::string_view rest_;
};

}  // namespace velk
