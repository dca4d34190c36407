// The runner's own reading of an import file, from its bytes and independent of the screen: what
// the account is checked against, and what the rejects are copied from.
//
// Lines end at each carriage return + line feed pair and nowhere else. The first line is the
// header; each further line that is not empty is a record. Record k (from 1) stands in row k + 1 of
// the mapping list.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"
#include "shared/csv_text.h"

namespace velk {

struct RecordPlace {
  std::size_t offset = 0;  ///< of its first byte
  std::size_t length = 0;  ///< without the line end
  std::size_t line = 0;    ///< as an editor counts, from 1: line feeds in front, and one
};

class InputRecords {
 public:
  InputRecords() = default;
  explicit InputRecords(std::string bytes);

  const std::string& bytes() const { return bytes_; }
  std::string_view header() const { return bytesOf(header_); }
  std::size_t count() const { return records_.size(); }
  /// By position from 0.
  const RecordPlace& place(std::size_t record) const { return records_[record]; }
  std::string_view bytesOf(std::size_t record) const { return bytesOf(records_[record]); }
  /// The record's first fields, at most `most`, as UTF-8 and without their quotes; the one that
  /// cannot be unquoted is empty.
  std::vector<std::string> fields(std::size_t record, QuotedComma quotedComma,
                                  std::size_t most) const;

 private:
  std::string_view bytesOf(const RecordPlace& place) const {
    return std::string_view(bytes_).substr(place.offset, place.length);
  }

  std::string bytes_;
  RecordPlace header_;
  std::vector<RecordPlace> records_;
};

/// Reads the whole file. Errors: those of files.h; 7 for one beyond the length of a text.
std::string readBytes(FileSystem& files, std::string_view path);

}  // namespace velk
