// Workbooks that are ZIP archives, made part by part.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velk {

using ZipParts = std::vector<std::pair<std::string, std::string>>;
/// Packed; each part claims its own length.
std::string zipped(const ZipParts& parts);

/// Rows of cells, "|" between them. What a cell begins with tells what it is: # a day such as
/// #2008-03-31; $ a number with two decimals; % one of five digits; ? a formula of that result,
/// none if nothing follows; ! an error; anything else is a text.
struct TestSheet {
  std::string name;
  std::vector<std::string> rows;
  bool isHidden = false;
};
ZipParts xlsxParts(const std::vector<TestSheet>& sheets);
ZipParts odsParts(const std::vector<TestSheet>& sheets);

}  // namespace velk
