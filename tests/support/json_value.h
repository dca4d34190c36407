// A strict reader of JSON: anything but one document in valid UTF-8 is refused.
#pragma once

#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/text.h"

namespace velk {

struct Json {
  using Array = std::vector<Json>;
  using Object = std::map<std::string, Json>;
  std::variant<std::nullptr_t, bool, double, std::string, Array, Object> value;

  const Json& operator[](const std::string& key) const { return std::get<Object>(value).at(key); }
  const Json& operator[](std::size_t index) const { return std::get<Array>(value).at(index); }
  const std::string& text() const { return std::get<std::string>(value); }
  double number() const { return std::get<double>(value); }
  bool flag() const { return std::get<bool>(value); }
  bool isNull() const { return std::holds_alternative<std::nullptr_t>(value); }
  std::size_t size() const { return std::get<Array>(value).size(); }
};

class JsonReader {
 public:
  /// Throws std::runtime_error.
  static Json read(std::string_view text) {
    if (toUtf8(toUtf16(text)) != text) throw std::runtime_error("no UTF-8");
    JsonReader reader(text);
    Json json = reader.readValue();
    reader.skipBlanks();
    if (reader.at_ != text.size()) reader.fail();
    return json;
  }

 private:
  explicit JsonReader(std::string_view text) : text_(text) {}

  [[noreturn]] void fail() const { throw std::runtime_error("no JSON at " + std::to_string(at_)); }
  char peek() const { return at_ < text_.size() ? text_[at_] : '\0'; }
  void skipBlanks() {
    while (peek() == ' ' || peek() == '\n') ++at_;
  }
  bool take(char c) {
    skipBlanks();
    if (peek() != c) return false;
    ++at_;
    return true;
  }
  void expect(char c) {
    if (!take(c)) fail();
  }
  bool takeWord(std::string_view word) {
    if (!text_.substr(at_).starts_with(word)) return false;
    at_ += word.size();
    return true;
  }

  Json readValue() {
    skipBlanks();
    if (peek() == '{') return readObject();
    if (peek() == '[') return readArray();
    if (peek() == '"') return {readText()};
    if (takeWord("true")) return {true};
    if (takeWord("false")) return {false};
    if (takeWord("null")) return {nullptr};
    return readNumber();
  }

  Json readNumber() {
    const std::size_t start = at_;
    while (std::string_view("+-.eE0123456789").find(peek()) != std::string_view::npos &&
           at_ < text_.size()) {
      ++at_;
    }
    const std::string number(text_.substr(start, at_ - start));
    const bool digitFirst =
        !number.empty() && (number[0] == '-' || (number[0] >= '0' && number[0] <= '9'));
    std::size_t used = 0;
    if (!digitFirst) fail();
    const double value = std::stod(number, &used);
    if (used != number.size()) fail();
    return {value};
  }

  Json readArray() {
    Json::Array items;
    expect('[');
    if (take(']')) return {items};
    do {
      items.push_back(readValue());
    } while (take(','));
    expect(']');
    return {std::move(items)};
  }

  Json readObject() {
    Json::Object members;
    expect('{');
    if (take('}')) return {members};
    do {
      skipBlanks();
      std::string key = readText();
      expect(':');
      if (!members.emplace(std::move(key), readValue()).second) fail();  // a key given twice
    } while (take(','));
    expect('}');
    return {std::move(members)};
  }

  std::string readText() {
    if (peek() != '"') fail();
    ++at_;
    std::string text;
    for (; peek() != '"'; ++at_) {
      if (at_ >= text_.size() || static_cast<unsigned char>(peek()) < 0x20) fail();
      text += peek() == '\\' ? readEscape() : std::string(1, peek());
    }
    ++at_;
    return text;
  }

  std::string readEscape() {
    ++at_;
    if (peek() == '"' || peek() == '\\') return std::string(1, peek());
    if (peek() != 'u' || at_ + 4 >= text_.size()) fail();
    const auto code =
        static_cast<char16_t>(std::stoul(std::string(text_.substr(at_ + 1, 4)), nullptr, 16));
    at_ += 4;
    return toUtf8(std::u16string_view(&code, 1));
  }

  std::string_view text_;
  std::size_t at_ = 0;
};

}  // namespace velk
