#include "platform/text.h"

#include <doctest/doctest.h>

#include <random>
#include <string>

namespace velk {
namespace {

using namespace std::string_view_literals;

std::u16string replacements(std::size_t count) {
  return std::u16string(count, u'\uFFFD');
}

TEST_CASE("every byte of windows-1252 survives the way in and out") {
  const CodePage& page = CodePage::windows1252();
  std::string all;
  for (int byte = 0; byte < 256; ++byte) {
    const std::string one(1, static_cast<char>(byte));
    CAPTURE(byte);
    CHECK(page.encode(page.decode(one)) == one);
    CHECK(page.decode(one).size() == page.utf8Length(static_cast<unsigned char>(byte)));
    char buffer[4];
    const char* end = page.decodeByte(static_cast<unsigned char>(byte), buffer);
    CHECK(std::string(buffer, static_cast<std::size_t>(end - buffer)) == page.decode(one));
    all += one;
  }
  CHECK(page.encode(page.decode(all)) == all);
  CHECK(page.decode(std::string_view(all).substr(0x7E, 0x24)) ==
        "~\x7F€\u0081‚ƒ„…†‡ˆ‰Š‹Œ\u008DŽ\u008F\u0090‘’“”•–—˜™š›œ\u009DžŸ\u00A0¡");
  CHECK(page.decode("\xBF\xD7\xE9\xFF") == "¿×éÿ");
}

TEST_CASE("writing to the code page") {
  const struct {
    std::string_view text;
    std::string_view bytes;
  } rows[] = {{"", ""},
              {"plain\r\n\x1A\0end"sv, "plain\r\n\x1A\0end"sv},
              {"1 €, é", "1 \x80, \xE9"},
              {"\u0416a\u4E2D\U0001F600", "?a??"},
              {"\u0080\u0081", "?\x81"},
              {"\uFFFD", "?"},
              {"\xE9t\xE9", "?t?"},
              {"\xE2\x82", "??"},
              {"\xE2\x82z\xC3\xA9", "??z\xE9"}};
  for (const auto& row : rows) {
    CAPTURE(row.text);
    CHECK(CodePage::windows1252().encode(row.text) == row.bytes);
  }
}

TEST_CASE("a code page of one's own") {
  std::array<char16_t, 128> upper{};
  for (std::size_t i = 0; i < upper.size(); ++i) upper[i] = static_cast<char16_t>(0x380 + i);
  const CodePage greek(upper);
  CHECK(greek.decode("a\x80\xFF") == "a\u0380\u03FF");
  CHECK(greek.encode("\u0380\u03FF\u0400\u0080") == "\x80\xFF??");
}

TEST_CASE("a byte beyond ASCII is seen at every place") {
  for (std::size_t length = 0; length < 80; ++length) {
    const std::string ascii(length, '\x7F');
    CHECK(isAscii(ascii));
    for (std::size_t at = 0; at < length; ++at) {
      std::string bytes = ascii;
      bytes[at] = '\x80';
      CAPTURE(length);
      CAPTURE(at);
      CHECK_FALSE(isAscii(bytes));
      CHECK(CodePage::windows1252().decode(bytes) ==
            ascii.substr(at + 1).insert(0, "€").insert(0, ascii.substr(0, at)));
    }
  }
}

TEST_CASE("every character survives UTF-16") {
  std::u16string all;
  for (char32_t code = 1; code < 0x110000; ++code) {
    if (code == 0xD800) code = 0xE000;
    if (code < 0x10000) {
      all += static_cast<char16_t>(code);
    } else {
      all += static_cast<char16_t>(0xD7C0 + (code >> 10));
      all += static_cast<char16_t>(0xDC00 + (code & 0x3FF));
    }
  }
  CHECK((toUtf16(toUtf8(all)) == all));
  CHECK(toUtf8(u"a\u00E9\u20AC\U0001F600") == "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
}

TEST_CASE("malformed UTF-8: each byte is a replacement character") {
  const std::string_view rows[] = {
      "\x80",         "\xBF\xBF",         "\xC0\x80",         "\xC1\xBF",
      "\xC3",         "\xE0\x80\x80",     "\xE0\x9F\xBF",     "\xE2\x82",
      "\xED\xA0\x80", "\xED\xBF\xBF",     "\xF0\x80\x80\x80", "\xF0\x8F\xBF\xBF",
      "\xF0\x9F\x98", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xF8\x88\x80\x80\x80",
      "\xFE\xFF"};
  for (const std::string_view row : rows) {
    CAPTURE(row.size());
    CHECK((toUtf16(row) == replacements(row.size())));
    CHECK((toUtf16("a" + std::string(row) + "\xC3\xA9") == u"a" + replacements(row.size()) + u"é"));
  }
}

TEST_CASE("malformed UTF-16: each half is a replacement character") {
  const std::u16string_view rows[] = {u"\xD800", u"\xDC00", u"\xDC00\xD800", u"\xDBFF\xDBFF"};
  for (const std::u16string_view row : rows) {
    CHECK((toUtf16(toUtf8(row)) == replacements(row.size())));
    CHECK((toUtf16(toUtf8(std::u16string(row) + u"a")) == replacements(row.size()) + u"a"));
  }
  CHECK((toUtf8(u"\xD83D\xD83D\xDE00") == "\xEF\xBF\xBD\xF0\x9F\x98\x80"));
}

TEST_CASE("the last character is the one that reading from the start ends with") {
  std::mt19937 random(1252);
  const std::string_view alphabet = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\xED\xA0\xFF";
  for (int i = 0; i < 50'000; ++i) {
    std::string text;
    for (auto length = 1 + random() % 8; length > 0; --length) {
      text += alphabet[random() % alphabet.size()];
    }
    const std::size_t at = lastCharacter(text);
    const std::u16string last = toUtf16(text.substr(at));
    CAPTURE(text);
    REQUIRE((toUtf16(text.substr(0, at)) + last == toUtf16(text)));
    REQUIRE(last.size() == (text.size() - at == 4 ? 2 : 1));
  }
}

TEST_CASE("blanks at the ends") {
  const struct {
    std::string_view text;
    std::string_view trimmed;
  } rows[] = {{"", ""},
              {"   ", ""},
              {" a b ", "a b"},
              {"a", "a"},
              {"\ta\r\n", "\ta\r\n"},
              {" \u00A0 ", "\u00A0"},
              {" \0 "sv, "\0"sv}};
  for (const auto& row : rows) {
    CAPTURE(row.text);
    CHECK(trim(row.text) == row.trimmed);
  }
}

TEST_CASE("letter case is that of A to Z only") {
  CHECK(lowerAscii("AZ@[ \u00C9\xC9") == "az@[ \u00C9\xC9");
  CHECK(upperAscii("az`{ \u00E9\xE9") == "AZ`{ \u00E9\xE9");
  const struct {
    std::string_view a;
    std::string_view b;
    bool equal;
  } rows[] = {{"", "", true},
              {"Vendor ID", "vENDOR id", true},
              {"a", "ab", false},
              {"ab", "a", false},
              {"@", "`", false},
              {"[", "{", false},
              {"\u00C9", "\u00E9", false},
              {"a\0b"sv, "A\0c"sv, false}};
  for (const auto& row : rows) {
    CAPTURE(row.a);
    CAPTURE(row.b);
    CHECK(equalsIgnoringCase(row.a, row.b) == row.equal);
  }
}

}  // namespace
}  // namespace velk
