#include "apps/opnimp/convert/row_reader.h"

#include <algorithm>

#include "base/text.h"
#include "shared/csv_text.h"

namespace velk {

namespace {

constexpr char quote = '"';
constexpr std::string_view pair = "\r\n";
/// Of a text that was converted twice.
constexpr std::string_view doubled = "\r\r\n";
/// No list shows more columns.
constexpr std::size_t mostCells = 32767;

}  // namespace

RowReader::RowReader(std::string_view text, char delimiter, LineEnds ends, std::size_t offset,
                     std::size_t line)
    : text_(text), delimiter_(delimiter), ends_(ends), next_(offset), line_(line), nextLine_(line) {
  std::fill(special_.begin() + 0x80, special_.end(), true);
  for (const char c : {delimiter, quote, ',', '\r', '\n'}) {
    special_[static_cast<unsigned char>(c)] = true;
  }
}

bool RowReader::next() {
  if (next_ >= text_.size()) return false;
  start_ = next_;
  line_ = nextLine_;
  broken_ = false;
  cells_.clear();
  for (std::size_t at = start_;; ++at) {
    const std::size_t begin = at;
    const bool isQuoted = at < text_.size() && text_[at] == quote;
    isPlain_ = !isQuoted;
    at = isQuoted ? endOfQuoted(at) : endOfPlain(at);
    if (cells_.size() < mostCells) {
      cells_.push_back({{text_.data() + begin, at - begin}, isPlain_});
    } else {
      broken_ = true;
    }
    if (at < text_.size() && text_[at] == delimiter_) continue;
    endRow(at);
    return true;
  }
}

bool RowReader::isLineEnd(std::size_t at) const {
  const char c = text_[at];
  switch (ends_) {
    case LineEnds::Pairs:
      return c == '\r' && at + 1 < text_.size() && text_[at + 1] == '\n';
    case LineEnds::LineFeeds:
      return c == '\n' || text_.substr(at, pair.size()) == pair ||
             text_.substr(at, doubled.size()) == doubled;
    default:
      return c == '\r';
  }
}

std::size_t RowReader::endOfPlain(std::size_t at) {
  const auto isSpecial = [special = special_.data()](char c) {
    return special[static_cast<unsigned char>(c)];
  };
  const char* const end = text_.data() + text_.size();
  for (const char* from = text_.data() + at;; ++from) {
    from = std::find_if(from, end, isSpecial);
    at = static_cast<std::size_t>(from - text_.data());
    if (from == end || *from == delimiter_) return at;
    // Only a carriage return or a line feed can begin a line end.
    if ((*from == '\n' || *from == '\r') && isLineEnd(at)) return at;
    isPlain_ = false;
    countLine(*from);
  }
}

std::size_t RowReader::endOfQuoted(std::size_t at) {
  for (++at; at < text_.size(); ++at) {
    if (text_[at] == quote) {
      if (at + 1 == text_.size() || text_[at + 1] != quote) break;
      ++at;
    } else if (ends_ == LineEnds::Pairs && isLineEnd(at)) {
      broken_ = true;
      return at;
    } else {
      countLine(text_[at]);
    }
  }
  if (at == text_.size()) {
    broken_ = true;
    return at;
  }
  const std::size_t end = endOfPlain(at + 1);
  if (end != at + 1) broken_ = true;
  return end;
}

void RowReader::endRow(std::size_t at) {
  end_ = at;
  if (end_ - start_ > maxLineLength) broken_ = true;
  const std::string_view rest = text_.substr(at, doubled.size());
  const bool isDoubled = ends_ == LineEnds::LineFeeds && rest == doubled;
  next_ = at + (isDoubled                ? doubled.size()
                : rest.starts_with(pair) ? pair.size()
                                         : std::min<std::size_t>(rest.size(), 1));
  ++nextLine_;
}

// As an editor does, also within a value.
void RowReader::countLine(char c) {
  if (c == (ends_ == LineEnds::CarriageReturns ? '\r' : '\n')) ++nextLine_;
}

std::string_view meantValue(std::string_view written, std::string& room) {
  const bool isQuoted = written.size() >= 2 && written.front() == quote && written.back() == quote;
  if (!isQuoted) return written;
  const std::string_view inside = written.substr(1, written.size() - 2);
  if (inside.find(quote) == std::string_view::npos) return inside;
  room.clear();
  for (std::size_t i = 0; i < inside.size(); ++i) {
    room += inside[i];
    if (inside[i] == quote) ++i;  // its twin
  }
  return room;
}

bool needsQuotes(std::string_view value) {
  return value.find_first_of(",\"\r\n") != std::string_view::npos;
}

void appendQuoted(std::string& to, std::string_view value) {
  to += quote;
  for (std::size_t i = 0; i < value.size(); ++i) {
    if (value.substr(i).starts_with("\r\n")) continue;
    if (value[i] == quote) to += quote;
    to += value[i] == '\r' ? '\n' : value[i];
  }
  to += quote;
}

bool isBlankRow(std::string_view row) {
  row = row.substr(0, row.find_last_not_of("\r\n") + 1);
  return row.find_first_not_of(" \t\x1A") == std::string_view::npos || row == "\"\"";
}

bool isEmptyRow(std::span<const WrittenCell> cells) {
  return cells.size() > 1 && std::ranges::all_of(cells, [](const WrittenCell& cell) {
           const std::string_view value = trim(cell.text);
           return value.empty() || value == "\"\"";
         });
}

}  // namespace velk
