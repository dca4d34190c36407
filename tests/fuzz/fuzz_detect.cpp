// What is found out of files of other programs: no bytes get lost between rows and their values.
#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/convert/layout.h"
#include "apps/opnimp/convert/source_text.h"
#include "base/text.h"
#include "tests/fuzz/convert_input.h"

using namespace velk;

namespace {

void readRows(std::string_view text, const Layout& layout) {
  RowReader rows = layout.rows(text);
  std::string read(text.substr(0, layout.offset));
  std::size_t line = 0;
  while (rows.next()) {
    require(rows.line() > line);
    line = rows.line();
    std::string joined;
    for (const WrittenCell& cell : rows.cells()) {
      if (cell.isPlain) {
        require(isAscii(cell.text) && cell.text.find_first_of("\",\r\n") == cell.text.npos);
      }
      joined.append(cell.text) += layout.delimiter;
    }
    joined.pop_back();
    require(joined == rows.row() || rows.isBroken());
    read.append(rows.row()).append(rows.lineEnd());
  }
  require(read == text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  const ConvertInput input = convertInput(data, size);
  try {
    const SourceText source(input.bytes, input.arguments.convert);
    if (source.isUtf8())
      require(findInvalidUtf8(source.text()) == std::string_view::npos ||
              !input.arguments.convert.encoding.empty() || input.bytes.starts_with("\xEF\xBB\xBF"));
    const Layout layout = findLayout(source.text(), input.arguments);
    require(layout.offset <= source.text().size());
    readRows(source.text(), layout);
  } catch (const UsageError&) {
    // Of titles in a line that there is not.
  }
  return 0;
}
