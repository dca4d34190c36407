#include "mapping/text_table.h"

#include "base/errors.h"

namespace velk {

void TextTable::add(std::string_view text) {
  // Cells of a workbook may share a text: a small file could ask for gigabytes.
  constexpr std::size_t maxLength = std::size_t{1} << 28;
  // A NUL ends a text among the shared characters, so that none may contain one.
  if (text.find('\0') != std::string_view::npos) {
    throw RuntimeError(ErrorNumber::InvalidFileFormat,
                       "A cell of the workbook holds a NUL character");
  }
  std::string& all = cells_.characters;
  if (text.size() >= maxLength - all.size()) throw RuntimeError(ErrorNumber::OutOfMemory);
  cells_.offsets.push_back(static_cast<std::uint32_t>(all.size()));
  all.append(text).push_back('\0');
}

}  // namespace velk
