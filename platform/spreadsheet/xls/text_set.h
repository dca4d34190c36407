// Texts that are kept once each.
//
// Open addressing over the pool, of our own: with std::unordered_map an export of 60,000 salesmen
// takes three times as long and 10 MB more, for a node and its page faults for each text.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/spreadsheet/text_pool.h"

namespace velk::xls {

class TextSet {
 public:
  /// The number of a text, which is added unless the set has it.
  std::uint32_t add(std::string_view text);
  const TextPool& texts() const { return texts_; }

 private:
  /// Part of the hash is kept beside the number, so that few texts are compared in vain.
  struct Slot {
    std::uint32_t hash;
    std::uint32_t number;  ///< from 1; 0 in a free slot
  };

  void grow();

  TextPool texts_;
  std::vector<Slot> slots_;  // open addressing
};

}  // namespace velk::xls
