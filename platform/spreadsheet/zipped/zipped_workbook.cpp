#include "platform/spreadsheet/zipped/zipped_workbook.h"

#include <algorithm>

#include "platform/spreadsheet/damage.h"
#include "platform/spreadsheet/zipped/ods_workbook.h"
#include "platform/spreadsheet/zipped/xlsx_cells.h"
#include "platform/spreadsheet/zipped/xlsx_parts.h"
#include "platform/spreadsheet/zipped/xlsx_styles.h"
#include "platform/spreadsheet/zipped/xlsx_texts.h"
#include "platform/spreadsheet/zipped/zip_archive.h"

namespace velk {

namespace {

/// Unpacking is quick; the second reading that it saves most sheets is not.
bool mentions(const ZipArchive& archive, const std::string& part, std::string_view word) {
  bool found = false;
  std::string end;  // of the piece before
  archive.read(part, [&](std::string_view piece) {
    found = found || piece.find(word) != std::string_view::npos ||
            (end + std::string(piece.substr(0, word.size()))).find(word) != std::string::npos;
    end = piece.substr(piece.size() - std::min(piece.size(), word.size()));
  });
  return found;
}

void readXlsx(const ZipArchive& archive, SheetSink& sink) {
  const XlsxParts parts = readXlsxParts(archive);
  TextPool texts;
  if (!parts.texts.empty()) {
    XlsxTexts handler(texts);
    readXml(archive, parts.texts, handler);
  }
  XlsxStyles styles;
  if (!parts.styles.empty()) readXml(archive, parts.styles, styles);
  for (const XlsxParts::Sheet& sheet : parts.sheets) {
    sink.sheet(sheet.name, sheet.isHidden);
    XlsxMerges merges;
    if (mentions(archive, sheet.part, "mergeCell ")) readXml(archive, sheet.part, merges);
    XlsxCells cells(parts, texts, styles, merges, sink);
    readXml(archive, sheet.part, cells);
  }
}

void readOds(const ZipArchive& archive, SheetSink& sink) {
  constexpr std::size_t looked = 1U << 20U;
  constexpr std::string_view manifest = "META-INF/manifest.xml";
  const std::string list = archive.has(manifest) ? archive.beginningOf(manifest, looked) : "";
  if (list.find("encryption-data") != std::string::npos) {
    refuse("The workbook is protected with a password; save it without one");
  }
  OdsWorkbook handler(sink);
  readXml(archive, "content.xml", handler, Elements::All);
  if (!handler.hasSheets()) refuse("The workbook has no worksheet");
}

}  // namespace

std::size_t bytesToRead(std::string_view file) {
  try {
    const ZipArchive archive(file);
    const bool isOds = archive.has("content.xml");
    return archive.storedSize([&](std::string_view name) {
      return isOds ? name == "content.xml" : name.ends_with(".xml");
    });
  } catch (const RuntimeError&) {
    return 0;
  }
}

void readZippedSheets(std::string_view file, SheetSink& sink) {
  const ZipArchive archive(file);
  if (archive.has("content.xml")) return readOds(archive, sink);
  if (archive.has("_rels/.rels")) return readXlsx(archive, sink);
  refuse("The file is a ZIP archive that holds no workbook");
}

}  // namespace velk
