// Files by number, as the runtime's sequential input and append know them: 1 to 255, the lowest
// free number next.
//
// Bytes are in the code page, texts are UTF-8. Errors: 52 for a number that is not open (or not
// open for that use), 55 for one that is open already, 62 for reading past the end, 67 when no
// number is free, 7 for a text longer than the runtime knows, and those of files.h.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "base/text.h"
#include "platform/files.h"

namespace velk {

/// The longest text of the runtime, in bytes.
inline constexpr std::size_t maxTextLength = 0x7FFFFFFF;

class NumberedFiles {
 public:
  /// The last number is kept for the error log: an import that ran out of numbers can still say so.
  enum class Use { General, ErrorLog };
  static constexpr std::int16_t lastNumber = 255;

  NumberedFiles(FileSystem& files, const CodePage& codePage) : files_(files), codePage_(codePage) {}

  std::int16_t freeFile(Use use = Use::General) const;
  void openForInput(std::int16_t number, std::string_view path);
  void openForAppend(std::int16_t number, std::string_view path);
  /// Closing a number that is not open does nothing.
  void close(std::int16_t number);

  /// True when the next byte to read is beyond the end. 0x1A is an ordinary character.
  bool atEnd(std::int16_t number);
  /// The next line without its end: a carriage return, alone or followed by a line feed. A bare
  /// line feed is an ordinary character.
  std::string lineInput(std::int16_t number);
  /// Back to the first byte.
  void rewind(std::int16_t number);
  /// Reads as many bytes as the file had when it was opened, from the first one. Error 62 when it
  /// has become shorter.
  std::string readAll(std::int16_t number);

  /// Whether the file's last line has no end: what was written last was cut off.
  bool endsWithinLine(std::string_view path) const;
  /// Appends the text and a carriage return and line feed.
  void printLine(std::int16_t number, std::string_view text);

 private:
  static constexpr std::size_t bufferSize = std::size_t{64} * 1024;
  struct Input {
    std::unique_ptr<InputFile> file;
    std::unique_ptr<std::array<char, bufferSize>> buffer;
    std::size_t next = 0;
    std::size_t end = 0;
  };

  bool isOpen(std::int16_t number) const;
  void checkFree(std::int16_t number) const;
  Input& input(std::int16_t number);
  static bool fill(Input& input);
  std::string readText(Input& input) const;

  FileSystem& files_;
  const CodePage& codePage_;
  std::map<std::int16_t, Input> inputs_;
  std::map<std::int16_t, std::unique_ptr<OutputFile>> outputs_;
};

}  // namespace velk
