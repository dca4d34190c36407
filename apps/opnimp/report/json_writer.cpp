#include "apps/opnimp/report/json_writer.h"

#include <cmath>
#include <string>

#include "apps/opnimp/cli/printable.h"
#include "base/text.h"

namespace velk {

void JsonWriter::separate() {
  if (afterKey_) {
    afterKey_ = false;
    return;
  }
  if (hasItems_.empty()) return;
  if (hasItems_.back()) out_ << ',';
  hasItems_.back() = true;
}

void JsonWriter::member(std::string_view name, const std::vector<std::string>& texts) {
  key(name);
  beginArray();
  for (const std::string& item : texts) text(item);
  endArray();
}

void JsonWriter::memberOrNull(std::string_view name, std::string_view value) {
  key(name);
  if (value.empty()) {
    null();
  } else {
    text(value);
  }
}

void JsonWriter::open(char bracket) {
  separate();
  out_ << bracket;
  hasItems_.push_back(false);
}

void JsonWriter::close(char bracket) {
  hasItems_.pop_back();
  out_ << bracket;
  if (hasItems_.empty()) out_ << '\n';
}

void JsonWriter::key(std::string_view name) {
  separate();
  quoted(name);
  out_ << ':';
  afterKey_ = true;
}

void JsonWriter::quoted(std::string_view text) {
  constexpr std::string_view hex = "0123456789abcdef";
  std::string escaped = "\"";
  const std::string valid = isAscii(text) ? std::string(text) : toUtf8(toUtf16(text));
  for (const char c : valid) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      escaped += '\\';
      escaped += c;
    } else if (byte < 0x20 || byte == 0x7F) {
      escaped += "\\u00";
      escaped += hex[byte >> 4];
      escaped += hex[byte & 0xF];
    } else {
      escaped += c;
    }
  }
  out_ << escaped << '"';
}

void JsonWriter::text(std::string_view text) {
  separate();
  quoted(text);
}

void JsonWriter::number(long long number) {
  separate();
  out_ << std::to_string(number);
}

void JsonWriter::number(double number) {
  if (!std::isfinite(number)) return null();
  separate();
  out_ << shortest(number);
}

void JsonWriter::flag(bool flag) {
  separate();
  out_ << (flag ? "true" : "false");
}

void JsonWriter::null() {
  separate();
  out_ << "null";
}

void JsonWriter::value(const Value& value) {
  if (isNull(value)) return null();
  if (const auto* integer = std::get_if<std::int32_t>(&value)) {
    return number(static_cast<long long>(*integer));
  }
  if (const auto* real = std::get_if<double>(&value)) return number(*real);
  if (const auto* date = std::get_if<Date>(&value)) return text(formatIso(*date));
  text(std::get<std::string>(value));
}

}  // namespace velk
