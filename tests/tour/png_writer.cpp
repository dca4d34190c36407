#include "tests/tour/png_writer.h"

#include <algorithm>
#include <array>

namespace velk {

namespace {

using Bytes = std::vector<std::uint8_t>;

void addBigEndian(std::string& to, std::uint32_t number) {
  for (int shift = 24; shift >= 0; shift -= 8) to += static_cast<char>(number >> shift & 0xFF);
}

std::uint32_t crc32(std::string_view bytes) {
  std::uint32_t crc = 0xFFFFFFFF;
  for (const char c : bytes) {
    crc ^= static_cast<std::uint8_t>(c);
    for (int bit = 0; bit < 8; ++bit) crc = crc >> 1 ^ ((crc & 1) != 0 ? 0xEDB88320U : 0U);
  }
  return ~crc;
}

std::uint32_t adler32(const Bytes& bytes) {
  constexpr std::uint32_t prime = 65521;
  std::uint32_t a = 1;
  std::uint32_t b = 0;
  for (const std::uint8_t byte : bytes) {
    a = (a + byte) % prime;
    b = (b + a) % prime;
  }
  return b << 16 | a;
}

/// One compressed block with the fixed codes of RFC 1951. Its only references are to the byte just
/// before: runs.
class Deflater {
 public:
  std::string compress(const Bytes& bytes) {
    addBits(0b011, 3);  // last block, fixed codes
    for (std::size_t i = 0; i < bytes.size();) {
      addSymbol(bytes[i]);
      const auto next = bytes.begin() + static_cast<std::ptrdiff_t>(i) + 1;
      const auto end = std::find_if(next, bytes.end(), [&](auto b) { return b != bytes[i]; });
      const auto run = static_cast<std::size_t>(end - next);
      const std::size_t packed = addRun(run);
      i += 1 + packed;
    }
    addSymbol(256);
    addBits(0, 7);  // fills the last byte
    return std::move(out_);
  }

 private:
  // Lengths that take no further bits. Returns how much of the run is written.
  std::size_t addRun(std::size_t run) {
    std::size_t left = run;
    for (; left >= 258; left -= 258) addReference(285);
    while (left >= 3) {
      const std::size_t length = std::min<std::size_t>(left, 10);
      addReference(static_cast<std::uint32_t>(254 + length));
      left -= length;
    }
    return run - left;
  }
  void addReference(std::uint32_t lengthSymbol) {
    addSymbol(lengthSymbol);
    addCode(0, 5);  // distance 1
  }
  void addSymbol(std::uint32_t symbol) {
    if (symbol < 144) return addCode(0x30 + symbol, 8);
    if (symbol < 256) return addCode(0x190 + symbol - 144, 9);
    if (symbol < 280) return addCode(symbol - 256, 7);
    addCode(0xC0 + symbol - 280, 8);
  }
  // Codes stand with their highest bit first, all else with the lowest.
  void addCode(std::uint32_t code, int length) {
    for (int bit = length - 1; bit >= 0; --bit) addBits(code >> bit & 1, 1);
  }
  void addBits(std::uint32_t bits, int count) {
    pending_ |= bits << filled_;
    filled_ += count;
    for (; filled_ >= 8; filled_ -= 8, pending_ >>= 8) out_ += static_cast<char>(pending_ & 0xFF);
  }

  std::string out_;
  std::uint32_t pending_ = 0;
  int filled_ = 0;
};

/// Each line after the number of its filter, 2: what it differs by from the line above.
Bytes filtered(const Picture24& picture) {
  const std::size_t line = std::size_t{picture.width} * 3;
  Bytes result;
  result.reserve((line + 1) * picture.height);
  for (std::size_t i = 0; i < picture.bytes.size(); ++i) {
    if (i % line == 0) result.push_back(2);
    const std::uint8_t above = i < line ? std::uint8_t{0} : picture.bytes[i - line];
    result.push_back(static_cast<std::uint8_t>(picture.bytes[i] - above));
  }
  return result;
}

void addChunk(std::string& to, std::string_view type, const std::string& content) {
  addBigEndian(to, static_cast<std::uint32_t>(content.size()));
  const std::string checked = std::string(type) + content;
  to += checked;
  addBigEndian(to, crc32(checked));
}

}  // namespace

std::string toPng(const Picture24& picture) {
  std::string header;
  addBigEndian(header, picture.width);
  addBigEndian(header, picture.height);
  header += std::string("\x08\x02\x00\x00\x00", 5);  // 8 bits, true colour, not interlaced
  const Bytes lines = filtered(picture);
  std::string data = "\x78\x01" + Deflater().compress(lines);
  addBigEndian(data, adler32(lines));
  std::string png = "\x89PNG\r\n\x1A\n";
  addChunk(png, "IHDR", header);
  addChunk(png, "IDAT", data);
  addChunk(png, "IEND", {});
  return png;
}

}  // namespace velk
