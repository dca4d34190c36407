// The whole text of a file, in one buffer that its reader may rewrite in place.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include "base/growing_buffer.h"
#include "base/text.h"
#include "platform/files.h"

namespace velk {

class FileText {
 public:
  /// The longest text of the runtime, in bytes.
  static constexpr std::size_t maxLength = 0x7FFFFFFF;

  FileText() = default;

  /// Reads length() bytes from where the file stands and decodes them. Plain ASCII is read straight
  /// into its place. Errors: 62 when there are fewer bytes, 7 beyond maxLength.
  static FileText read(InputFile& file, const CodePage& codePage);
  /// A copy of a text.
  static FileText copy(std::string_view text);

  std::size_t size() const { return size_; }
  std::string_view view() const { return {bytes_.data(), size_}; }
  /// Behind the text stand this many NUL bytes, which may be read and written: a scanner of whole
  /// words needs no special case for the end.
  static constexpr std::size_t padding = 64;

  /// size() characters and the padding.
  char* data() { return bytes_.data(); }
  /// Gives the buffer up for sharing.
  std::shared_ptr<const char[]> release() &&;

 private:
  void reserve(std::size_t characters);
  void pad();
  void decodeTail(std::size_t count, std::size_t toCome, const CodePage& codePage);

  GrowingBuffer<char> bytes_;
  std::size_t size_ = 0;
};

}  // namespace velk
