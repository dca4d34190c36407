// The runner's own reading of an import file, independent of the screen's: what the account is
// checked against, and what the rejects are copied from. Only the cells of workbooks are turned
// into texts by the reader that the screen has, too. Record k (from 1) is row k + 1 of the
// mapping list.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "apps/opnimp/cli/kinds.h"
#include "apps/opnimp/convert/conversion.h"
#include "platform/files.h"

namespace velk {

struct RecordPlace {
  std::size_t offset = 0;  ///< of its first byte
  std::size_t length = 0;  ///< without the line end; 0: it has no place among the bytes of its own
  std::size_t line = 0;    ///< as a user counts, from 1: line of a text, row of a sheet
};

class InputRecords {
 public:
  virtual ~InputRecords() = default;

  virtual std::size_t count() const = 0;
  /// Of a record by its position from 0, as in all that follows.
  virtual RecordPlace place(std::size_t record) const = 0;
  /// What a record occupies: "line" or "row".
  virtual std::string_view placeWord() const = 0;
  /// Such as "line 5".
  std::string where(std::size_t record) const;

  /// Of the columns that can be mapped, quotes kept; empty where none can.
  virtual std::vector<std::string> titles() const = 0;
  /// A record's values in the order of the preview's columns, at most `most`, as UTF-8 and without
  /// their quotes; the one that cannot be unquoted is empty.
  virtual std::vector<std::string> fields(std::size_t record, std::size_t most) const = 0;

  /// Why a file of this kind is refused for what it is or for its columns; empty when it is not.
  virtual std::string refusal(const ImportKind& kind) const = 0;
  /// The whole file, as the screens read it.
  virtual std::string_view bytes() const = 0;
  /// The same as it is on the disk.
  virtual std::string_view fileBytes() const { return bytes(); }
  /// How the one became the other, without bytes and lines.
  virtual const Conversion& conversion() const;
  /// Rows that contain data and are no records, since reading ends before them.
  virtual std::vector<std::size_t> unreadRows() const { return {}; }

  /// Writes a file of the same format with the header and some of the records. Errors: files.h.
  virtual void write(FileSystem& files, std::string_view path,
                     std::span<const std::size_t> records) const = 0;
};

/// What Velk_ModOpnImp::UnquoteField makes of a field, without its log: one that cannot be unquoted
/// is empty.
std::string withoutQuotes(std::string field);

/// What the preview makes of a field as it is written: each comma in it stood inside quotes, and is
/// dropped; then it loses its quotes.
std::string previewCell(std::string written);

}  // namespace velk
