// What a conversion took for granted, and why.
#pragma once

#include <string>

namespace velk {

struct Assumption {
  std::string what;    ///< such as "delimiter"
  std::string value;   ///< such as "semicolon"
  std::string reason;  ///< such as "214 of 214 lines have 5 fields"
  std::string option;  ///< that says otherwise; empty if none does
};

}  // namespace velk
