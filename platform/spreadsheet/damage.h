// The errors of a file that is no readable workbook: 321, with a description that says what the
// file is or where it is damaged.
#pragma once

#include <string>
#include <string_view>

#include "base/errors.h"

namespace velk {

[[noreturn]] inline void refuse(std::string_view what) {
  throw RuntimeError(ErrorNumber::InvalidFileFormat, std::string(what));
}

[[noreturn]] inline void damaged(std::string_view where) {
  refuse(std::string("The workbook is damaged: ").append(where));
}

}  // namespace velk
