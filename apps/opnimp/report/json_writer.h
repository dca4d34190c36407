// Writes one JSON document, in valid UTF-8 whatever the texts hold.
#pragma once

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "base/values.h"

namespace velk {

class JsonWriter {
 public:
  explicit JsonWriter(std::ostream& out) : out_(out) {}

  void beginObject() { open('{'); }
  void endObject() { close('}'); }
  void beginArray() { open('['); }
  void endArray() { close(']'); }
  void key(std::string_view name);

  void text(std::string_view text);
  void number(long long number);
  /// No number (infinite, not a number) is null.
  void number(double number);
  void flag(bool flag);
  void null();
  /// A date is a text such as "2008-03-31 00:00:00".
  void value(const Value& value);

  // A key and its value.
  void member(std::string_view name, std::string_view value) { key(name), text(value); }
  void member(std::string_view name, const char* value) { key(name), text(value); }
  void member(std::string_view name, bool value) { key(name), flag(value); }
  void member(std::string_view name, double value) { key(name), number(value); }
  void member(std::string_view name, long long value) { key(name), number(value); }
  void member(std::string_view name, int value) { member(name, static_cast<long long>(value)); }
  void member(std::string_view name, std::size_t value) {
    member(name, static_cast<long long>(value));
  }
  void member(std::string_view name, const std::vector<std::string>& texts);
  /// An empty text is null.
  void memberOrNull(std::string_view name, std::string_view value);

 private:
  void open(char bracket);
  void close(char bracket);
  void separate();
  void quoted(std::string_view text);

  std::ostream& out_;
  std::vector<bool> hasItems_;  // of the open brackets
  bool afterKey_ = false;
};

}  // namespace velk
