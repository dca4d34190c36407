// Texts that are kept once each.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/spreadsheet/xls/sheet_data.h"

namespace velk::xls {

class TextSet {
 public:
  /// The number of a text that stands in the set already or now.
  std::uint32_t add(std::string_view text);
  const TextPool& texts() const { return texts_; }

 private:
  /// Part of the hash stands beside the number, so that few texts are looked at in vain.
  struct Slot {
    std::uint32_t hash;
    std::uint32_t number;  ///< from 1; 0 in a free slot
  };

  void grow();

  TextPool texts_;
  std::vector<Slot> slots_;  // open addressing
};

}  // namespace velk::xls
