#include "platform/xls/text_set.h"

#include <algorithm>
#include <functional>

namespace velk::xls {

std::uint32_t TextSet::add(std::string_view text) {
  if (texts_.size() * 2 >= slots_.size()) grow();
  std::uint32_t& slot = slotOf(text);
  if (slot == 0) {
    texts_.add([&](std::string& to) { to.append(text); });
    slot = static_cast<std::uint32_t>(texts_.size());
  }
  return slot - 1;
}

std::uint32_t& TextSet::slotOf(std::string_view text) {
  const std::size_t mask = slots_.size() - 1;
  std::size_t at = std::hash<std::string_view>()(text) & mask;
  while (slots_[at] != 0 && texts_[slots_[at] - 1] != text) at = (at + 1) & mask;
  return slots_[at];
}

void TextSet::grow() {
  constexpr std::size_t first = 256;  // a power of two, as all that follow
  slots_.assign(std::max(first, slots_.size() * 2), 0);
  for (std::size_t number = 0; number < texts_.size(); ++number) {
    slotOf(texts_[number]) = static_cast<std::uint32_t>(number + 1);
  }
}

}  // namespace velk::xls
