// How an .xlsx workbook is made up: its sheets, and the parts that they share.
#pragma once

#include <string>
#include <vector>

#include "platform/spreadsheet/zipped/zip_archive.h"

namespace velk {

struct XlsxParts {
  struct Sheet {
    std::string name;
    bool isHidden;
    std::string part;  ///< of the archive
  };

  std::vector<Sheet> sheets;  ///< chart sheets are none
  std::string texts;          ///< the part of those that cells share; empty: there is none
  std::string styles;         ///< the same of the formats of cells
  bool from1904 = false;      ///< dates count from 1904, not 1900
  bool recalculates = false;  ///< results of formulas are not those of a calculation
};

/// Error 321 for an archive that is no such workbook.
XlsxParts readXlsxParts(const ZipArchive& archive);

}  // namespace velk
