#include "shared/file_text.h"

#include <algorithm>

#include "base/errors.h"

namespace velk {

void FileText::reserve(std::size_t characters) {
  if (characters > maxLength) throw RuntimeError(ErrorNumber::OutOfMemory);
  bytes_.reserve(characters + padding);
}

void FileText::pad() {
  std::fill_n(data() + size_, padding, '\0');
}

// Decodes the `count` bytes behind the text, which becomes as much longer; from the last byte to
// the first, so that the longer form can stand where the shorter one stood.
void FileText::decodeTail(std::size_t count, std::size_t toCome, const CodePage& codePage) {
  if (isAscii({data() + size_, count})) {
    size_ += count;
    return;
  }
  std::size_t decoded = 0;
  for (std::size_t i = 0; i < count; ++i) {
    decoded += codePage.utf8Length(static_cast<unsigned char>(data()[size_ + i]));
  }
  reserve(size_ + decoded + toCome);
  char* to = data() + size_ + decoded;
  for (std::size_t i = count; i-- > 0;) {
    const auto byte = static_cast<unsigned char>(data()[size_ + i]);
    to -= codePage.utf8Length(byte);
    codePage.decodeByte(byte, to);
  }
  size_ += decoded;
}

FileText FileText::read(InputFile& file, const CodePage& codePage) {
  constexpr std::size_t chunkSize =
      std::size_t{256} * 1024;  // stays in the cache between reading and decoding
  if (file.length() > maxLength) throw RuntimeError(ErrorNumber::OutOfMemory);
  auto toCome = static_cast<std::size_t>(file.length());
  FileText text;
  text.reserve(toCome);
  while (toCome > 0) {
    const std::size_t chunk = std::min(chunkSize, toCome);
    if (file.read(text.data() + text.size_, chunk) != chunk) {
      throw RuntimeError(ErrorNumber::InputPastEnd);
    }
    toCome -= chunk;
    text.decodeTail(chunk, toCome, codePage);
  }
  text.pad();
  return text;
}

FileText FileText::copy(std::string_view text) {
  FileText result;
  result.reserve(text.size());
  std::ranges::copy(text, result.data());
  result.size_ = text.size();
  result.pad();
  return result;
}

std::shared_ptr<const char[]> FileText::release() && {
  size_ = 0;
  return bytes_.release();
}

}  // namespace velk
