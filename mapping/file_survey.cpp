#include "mapping/file_survey.h"

#include <algorithm>
#include <memory>
#include <string>

#include "shared/csv_text.h"

namespace velk {

namespace {

constexpr std::size_t pieceSize = std::size_t{64} << 10;

/// Takes a file piece by piece; a pair of carriage return and line feed may lie in two of them.
class LineCounter {
 public:
  void take(std::string_view piece) {
    for (std::size_t at = 0; at < piece.size();) {
      if (afterReturn_ && piece[at] == '\n') {
        endLine();
        ++at;
        continue;
      }
      // A carriage return alone is a character like any other.
      if (afterReturn_) ++length_;
      const std::size_t stop = std::min(piece.find('\r', at), piece.size());
      length_ += stop - at;
      afterReturn_ = stop < piece.size();
      at = stop + 1;
    }
    found_.longestLine = std::max(found_.longestLine, length_);
  }

  bool goesOn() const { return found_.longestLine <= maxLineLength; }
  std::size_t lines() const { return lines_; }

  FileSurvey end() {
    if (afterReturn_) ++length_;
    endLine();
    return found_;
  }

 private:
  void endLine() {
    if (length_ > 0) ++found_.nonEmptyLines;
    if (lines_ == 0) found_.titlesEmpty = length_ == 0;
    found_.longestLine = std::max(found_.longestLine, length_);
    ++lines_;
    length_ = 0;
    afterReturn_ = false;
  }

  FileSurvey found_;
  std::size_t lines_ = 0;
  std::size_t length_ = 0;    // of the line so far
  bool afterReturn_ = false;  // it is not counted yet
};

/// A file of as many bytes as the first piece, and no more, promises: a list of a few million
/// cells.
bool isLong(InputFile& file, std::string_view first) {
  constexpr std::uint64_t always = std::uint64_t{512} << 20;
  constexpr std::uint64_t never = std::uint64_t{32} << 20;
  constexpr std::uint64_t manyRows = 2'000'000;
  if (file.length() <= never || file.length() > always) return file.length() > always;
  LineCounter counter;
  counter.take(first);
  return counter.lines() == 0 || file.length() / first.size() * counter.lines() > manyRows;
}

/// Empty at the end.
std::string_view nextPiece(InputFile& file, std::string& buffer) {
  buffer.resize(pieceSize);
  return std::string_view(buffer).substr(0, file.read(buffer.data(), buffer.size()));
}

std::optional<FileSurvey> survey(FileSystem& files, std::string_view path, bool onlyIfLong) {
  const std::unique_ptr<InputFile> file = files.openInput(path);
  std::string buffer;
  std::string_view piece = nextPiece(*file, buffer);
  if (onlyIfLong && !isLong(*file, piece)) return std::nullopt;
  LineCounter counter;
  for (; !piece.empty() && counter.goesOn(); piece = nextPiece(*file, buffer)) counter.take(piece);
  return counter.end();
}

}  // namespace

FileSurvey surveyFile(FileSystem& files, std::string_view path) {
  return *survey(files, path, false);
}

std::optional<FileSurvey> surveyIfLong(FileSystem& files, std::string_view path) {
  return survey(files, path, true);
}

}  // namespace velk
