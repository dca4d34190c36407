// The comma-separated text functions on any bytes: no crash, and the preview's one-pass table
// equals what the line functions say line by line.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "base/text.h"
#include "tests/support/slow_table.h"

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const velk::CodePage& page = velk::CodePage::windows1252();
  const std::string text = page.decode(bytes);
  require(page.encode(text) == bytes);
  if (!text.empty()) require(velk::quickly(text) == velk::slowly(text));
  // Fields that keep their commas, joined, are the line again if it contained no NUL.
  if (text.find('\0') == std::string::npos) {
    std::string joined;
    for (const std::string& field : velk::splitLine(text, velk::QuotedComma::Keep)) {
      joined.append(",").append(field);
    }
    require(text.empty() || joined.substr(1) == text);
    require(velk::countFields(text) == velk::splitLine(text, velk::QuotedComma::Keep).size());
  }
  return 0;
}
