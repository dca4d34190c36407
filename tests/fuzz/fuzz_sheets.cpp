// Workbooks of XML, and what the process that reads them hands back, on any bytes: no crash, no
// unbounded memory or time, and no error but those of a file that is no workbook. What is read of
// one, the other side takes.
//
// The first byte says what the others are: 'w' what is handed back, 'x' a sheet and 's' the styles
// and 't' the texts of an .xlsx workbook, 'o' the document of an .ods one; else they are the file
// with it.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "apps/opnimp/sheets/sheet_wire.h"
#include "base/errors.h"
#include "platform/spreadsheet/zipped/zipped_workbook.h"
#include "tests/support/zipped_workbooks.h"

namespace {

using namespace velk;

const std::string cells =
    "<worksheet><row><c t=\"s\"><v>0</v></c><c s=\"1\"><v>39538.5</v></c></row></worksheet>";

std::string part(std::string_view relation, const std::string& target) {
  return "<Relationship Id=\"" + target + "\" Type=\"t/" + std::string(relation) + "\" Target=\"" +
         target + "\"/>";
}

/// With the bytes as the part of that letter.
std::string workbookOf(char letter, const std::string& bytes) {
  if (letter == 'o') return zipped({{"content.xml", bytes}});
  const std::string sheet = letter == 'x' ? bytes : cells;
  return zipped(
      {{"_rels/.rels", "<Relationships>" + part("officeDocument", "w") + "</Relationships>"},
       {"_rels/w.rels", "<Relationships>" + part("worksheet", "x") + part("styles", "s") +
                            part("sharedStrings", "t") + "</Relationships>"},
       {"w", "<workbook><sheets><sheet name=\"A\" r:id=\"x\"/></sheets></workbook>"},
       {"x", sheet},
       {"s", letter == 's' ? bytes : "<a/>"},
       {"t", letter == 't' ? bytes : "<sst><si><t>a</t></si></sst>"}});
}

template <class Read>
bool isRead(Read read) {
  try {
    read();
    return true;
  } catch (const RuntimeError& error) {
    if (!error.is(ErrorNumber::InvalidFileFormat)) std::abort();
    return false;
  }
}

struct TooLong {};

void readFile(const std::string& file) {
  std::string told;
  SheetWriter writer([&](std::string_view bytes) {
    told += bytes;
    if (told.size() > std::size_t{1} << 24U) throw TooLong();
  });
  const auto tell = [&] {
    readZippedSheets(file, writer);
    writer.finish();
  };
  if (isRead(tell) && !isRead([&] { readWire(told); })) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  const char letter = bytes.empty() ? 'w' : bytes[0];
  const std::string rest = bytes.substr(bytes.empty() ? 0 : 1);
  if (letter == 'w') {
    isRead([&] { readWire(rest); });
    return 0;
  }
  try {
    readFile(std::string_view("xsto").find(letter) < 4 ? workbookOf(letter, rest) : bytes);
  } catch (const TooLong&) {
    // As the process is ended that reads such a file.
  }
  return 0;
}
