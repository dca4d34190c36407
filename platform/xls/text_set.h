// Texts that are kept once each.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/xls/sheet_data.h"

namespace velk::xls {

class TextSet {
 public:
  /// The number of a text that stands in the set already or now.
  std::uint32_t add(std::string_view text);
  const TextPool& texts() const { return texts_; }

 private:
  std::uint32_t& slotOf(std::string_view text);
  void grow();

  TextPool texts_;
  std::vector<std::uint32_t> slots_;  // open addressing; numbers from 1, and 0 for a free slot
};

}  // namespace velk::xls
