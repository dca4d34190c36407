#include "base/text.h"

#include <doctest/doctest.h>

#include <random>
#include <string>

namespace velk {
namespace {

using namespace std::string_view_literals;

const CodePage& page = CodePage::windows1252();

TEST_CASE("every byte of windows-1252 survives the way in and out") {
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
  CHECK(page.encode(page.decode(all)) == all);
  CHECK(page.decode(all.substr(0x7E, 0x24)) ==
        "~\x7F€\u0081‚ƒ„…†‡ˆ‰Š‹Œ\u008DŽ\u008F\u0090‘’“”•–—˜™š›œ\u009DžŸ\u00A0¡");
  CHECK(page.decode("\xBF\xD7\xE9\xFF") == "¿×éÿ");
}

TEST_CASE("writing to a code page") {
  const std::pair<std::string_view, std::string_view> rows[] = {
      {"", ""},
      {"plain\r\n\x1A\0end"sv, "plain\r\n\x1A\0end"sv},
      {"1 €, é", "1 \x80, \xE9"},
      {"\u0416a\u4E2D\U0001F600", "?a??"},
      {"\u0080\u0081\uFFFD", "?\x81?"},
      {"\xE9t\xE9", "?t?"},
      {"\xE2\x82z\xC3\xA9\xE2\x82", "??z\xE9??"}};
  for (const auto& row : rows) {
    CAPTURE(row.first);
    CHECK(page.encode(row.first) == row.second);
  }
  std::array<char16_t, 128> upper{};
  for (std::size_t i = 0; i < upper.size(); ++i) upper[i] = static_cast<char16_t>(0x380 + i);
  const CodePage greek(upper);
  CHECK(greek.decode("a\x80\xFF") == "a\u0380\u03FF");
  CHECK(greek.encode("\u0380\u03FF\u0400\u0080") == "\x80\xFF??");
}

TEST_CASE("a byte beyond ASCII is seen at every place") {
  for (std::size_t length = 0; length < 80; ++length) {
    CHECK(isAscii(std::string(length, '\x7F')));
    for (std::size_t at = 0; at < length; ++at) {
      const std::string before(at, '\x7F'), behind(length - at - 1, '\x7F');
      CAPTURE(before.size());
      CAPTURE(behind.size());
      CHECK_FALSE(isAscii(before + '\x80' + behind));
      CHECK(page.decode(before + '\x80' + behind) == before + "€" + behind);
    }
  }
}

TEST_CASE("every character survives UTF-16") {
  std::u16string all;
  for (char32_t code = 1; code < 0x110000; code += code == 0xD7FF ? 0x801 : 1) {
    if (code >= 0x10000) all += static_cast<char16_t>(0xD7C0 + (code >> 10));
    all += static_cast<char16_t>(code < 0x10000 ? code : 0xDC00 + (code & 0x3FF));
  }
  CHECK((toUtf16(toUtf8(all)) == all));
  CHECK(toUtf8(u"a\u00E9\u20AC\U0001F600") == "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
}

TEST_CASE("malformed: each byte of UTF-8, each half of UTF-16 is a replacement character") {
  const std::string_view bytes[] = {
      "\x80",         "\xBF\xBF",         "\xC0\x80",         "\xC1\xBF",
      "\xC3",         "\xE0\x80\x80",     "\xE0\x9F\xBF",     "\xE2\x82",
      "\xED\xA0\x80", "\xED\xBF\xBF",     "\xF0\x80\x80\x80", "\xF0\x8F\xBF\xBF",
      "\xF0\x9F\x98", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xF8\x88\x80\x80\x80",
      "\xFE\xFF"};
  for (const std::string_view row : bytes) {
    CAPTURE(&row - bytes);
    const std::u16string replaced(row.size(), u'\uFFFD');
    CHECK((toUtf16(row) == replaced));
    CHECK((toUtf16("a" + std::string(row) + "\xC3\xA9") == u"a" + replaced + u"é"));
  }
  const std::u16string_view halves[] = {u"\xD800", u"\xDC00", u"\xDC00\xD800", u"\xDBFF\xDBFF"};
  for (const std::u16string_view row : halves) {
    CAPTURE(&row - halves);
    const std::u16string replaced(row.size(), u'\uFFFD');
    CHECK((toUtf16(toUtf8(row)) == replaced));
    CHECK((toUtf16(toUtf8(std::u16string(row) + u"a")) == replaced + u"a"));
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

TEST_CASE("blanks are U+0020 only, letter case is that of A to Z only") {
  const std::pair<std::string_view, std::string_view> blanks[] = {{"", ""},
                                                                  {"   ", ""},
                                                                  {" a b ", "a b"},
                                                                  {"a", "a"},
                                                                  {"\ta\r\n", "\ta\r\n"},
                                                                  {" \u00A0\0 "sv, "\u00A0\0"sv}};
  for (const auto& row : blanks) CHECK(trim(row.first) == row.second);
  CHECK(lowerAscii("AZ@[ \u00C9\xC9") == "az@[ \u00C9\xC9");
  CHECK(upperAscii("az`{ \u00E9\xE9") == "AZ`{ \u00E9\xE9");
  CHECK(equalsIgnoringCase("Vendor ID", "vENDOR id"));
  const std::pair<std::string_view, std::string_view> different[] = {
      {"a", "ab"}, {"ab", "a"}, {"@", "`"}, {"[", "{"}, {"\u00C9", "\u00E9"}, {"a\0b"sv, "A\0c"sv}};
  for (const auto& row : different) CHECK_FALSE(equalsIgnoringCase(row.first, row.second));
}

}  // namespace
}  // namespace velk
