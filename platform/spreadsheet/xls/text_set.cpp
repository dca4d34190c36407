#include "platform/spreadsheet/xls/text_set.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace velk::xls {

std::uint32_t TextSet::add(std::string_view text) {
  // Half of the slots stay free, so that a free one is never far.
  if (texts_.size() * 2 >= slots_.size()) grow();
  const auto hash = static_cast<std::uint32_t>(std::hash<std::string_view>()(text));
  const std::size_t mask = slots_.size() - 1;
  std::size_t at = hash & mask;
  for (; slots_[at].number != 0; at = (at + 1) & mask) {
    const Slot& slot = slots_[at];
    if (slot.hash == hash && texts_[slot.number - 1] == text) return slot.number - 1;
  }
  const std::uint32_t number = texts_.add(text);
  slots_[at] = {hash, number + 1};
  return number;
}

void TextSet::grow() {
  constexpr std::size_t first = 256;  // a power of two, as all that follow
  const std::vector<Slot> before =
      std::exchange(slots_, std::vector<Slot>(std::max(first, slots_.size() * 2)));
  const std::size_t mask = slots_.size() - 1;
  // No comparing: all texts in the set differ.
  for (const Slot& slot : before) {
    if (slot.number == 0) continue;
    std::size_t at = slot.hash & mask;
    while (slots_[at].number != 0) at = (at + 1) & mask;
    slots_[at] = slot;
  }
}

}  // namespace velk::xls
