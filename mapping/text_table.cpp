#include "mapping/text_table.h"

#include <algorithm>
#include <utility>

#include "base/errors.h"

namespace velk {

namespace {

// Cells of a workbook may share a text: a small file could ask for gigabytes.
constexpr std::size_t maxLength = std::size_t{1} << 28;

template <class T>
void makeRoom(GrowingBuffer<T>& buffer, std::size_t needed) {
  if (needed > buffer.capacity()) buffer.reserve(std::max(needed, 2 * buffer.capacity()));
}

}  // namespace

void TextTable::add(std::string_view text) {
  if (text.find('\0') != std::string_view::npos) {
    throw RuntimeError(ErrorNumber::InvalidFileFormat,
                       "A cell of the workbook holds a NUL character");
  }
  if (text.size() >= maxLength - length_) throw RuntimeError(ErrorNumber::OutOfMemory);
  makeRoom(texts_, length_ + text.size() + 1);
  makeRoom(offsets_, cells_ + 1);
  offsets_.data()[cells_++] = static_cast<std::uint32_t>(length_);
  char* const end = std::copy(text.begin(), text.end(), texts_.data() + length_);
  *end = '\0';
  length_ += text.size() + 1;
}

std::vector<std::shared_ptr<const TextColumn>> TextTable::release() {
  const CellOffsets cells{offsets_.release(), rows(), columns_};
  const std::shared_ptr<const char[]> buffer = texts_.release();
  std::vector<std::shared_ptr<const TextColumn>> columns;
  for (std::size_t column = 0; column < columns_; ++column) {
    columns.push_back(std::make_shared<const TextColumn>(buffer, cells, column));
  }
  length_ = cells_ = 0;
  return columns;
}

}  // namespace velk
