// Workbooks that programs of all kinds have written.
#pragma once

#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace velk {

inline constexpr std::string_view workbookSeeds[] = {
    "own.xls",      "xlwt.xls", "libreoffice.xls", "poi.xls",
    "gnumeric.xls", "ruby.xls", "sheetjs.xls",     "writeexcel.xls"};

inline std::string workbookSeed(std::string_view name) {
  std::ifstream in(OPNIMP_SOURCE_DIR "/tests/fuzz/seeds/xls/" + std::string(name),
                   std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

}  // namespace velk
