// What tests of every subject check with.
#pragma once

#include <doctest/doctest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "base/errors.h"

namespace velk {

using Texts = std::vector<std::string>;

/// The number of the runtime error that a call raises; 0 when it returns.
template <class Routine>
std::int32_t errorOf(Routine&& routine) {
  try {
    routine();
  } catch (const RuntimeError& error) {
    return error.number();
  }
  return 0;
}

}  // namespace velk

template <>
struct doctest::StringMaker<velk::Texts> {
  static doctest::String convert(const velk::Texts& texts) {
    std::string all;
    for (const std::string& text : texts) all += "\n    [" + text + "]";
    return all.c_str();
  }
};
