#include "platform/spreadsheet/xls/xls_file.h"

#include <algorithm>

#include "platform/spreadsheet/damage.h"
#include "platform/spreadsheet/xls/compound_file.h"

namespace velk::xls {

namespace {

constexpr std::string_view saveAsXls = "; save it as an Excel 97-2003 workbook (*.xls)";

[[noreturn]] void refuseAs(std::string_view what) {
  refuse(std::string("The file is ").append(what).append(saveAsXls));
}

/// A file of versions 2 to 4 is one sheet without anything around it.
/// It begins with a BOF record: 0x0009, 0x0209 or 0x0409, of at most 8 bytes.
bool isBareSheet(std::string_view file) {
  return file.size() > 4 && file[0] == '\x09' && file[2] <= '\x08' && file[3] == '\0' &&
         (file[1] == '\0' || file[1] == '\x02' || file[1] == '\x04');
}

/// The stream of a version 5.0 to 2003, not in a compound file: a BOF record of 8 or 16 bytes.
bool isBareStream(std::string_view file) {
  constexpr std::string_view begin5("\x09\x08\x08\x00\x00\x05", 6);
  constexpr std::string_view begin8("\x09\x08\x10\x00\x00\x06", 6);
  return file.starts_with(begin5) || file.starts_with(begin8);
}

/// With its byte-order mark, or with a NUL in each of its first characters.
bool isUtf16(std::string_view file) {
  if (file.starts_with("\xFF\xFE") || file.starts_with("\xFE\xFF")) return true;
  constexpr std::size_t looked = 8;
  if (file.size() < looked) return false;
  const bool littleEndian = file[1] == '\0';
  for (std::size_t i = 0; i < looked; ++i) {
    if ((file[i] == '\0') != ((i % 2 == 1) == littleEndian)) return false;
  }
  return true;
}

[[noreturn]] void refuseOther(std::string_view file) {
  constexpr std::size_t looked = 4096;  // the kind of a file shows at its start
  const std::string_view start = file.substr(0, looked);
  if (file.empty()) refuse("The file is empty");
  // A ZIP archive. An .ods begins with a member that spells its type, not compressed.
  if (start.starts_with("PK\x03\x04")) {
    const bool ods = start.find("opendocument.spreadsheet") != std::string_view::npos;
    refuseAs(ods ? "an .ods workbook" : "an .xlsx workbook");
  }
  if (isBareSheet(file)) refuseAs("a workbook of version 4.0 or older");
  if (isBareStream(file)) refuseAs("a workbook without the compound file that belongs around it");
  if (isUtf16(file)) refuseAs("a text file in UTF-16");
  const std::size_t first = start.find_first_not_of("\xEF\xBB\xBF \t\r\n");
  if (first != std::string_view::npos && start[first] == '<') {
    refuseAs("a web page or XML document");
  }
  if (start.find('\0') == std::string_view::npos) refuseAs("a text file");
  refuse("The file is no workbook");
}

}  // namespace

StreamBytes workbookStream(std::string_view file) {
  if (!CompoundFile::recognises(file)) refuseOther(file);
  const CompoundFile compound(file);
  if (auto stream = compound.stream("Workbook")) return std::move(*stream);
  // Workbooks that are saved for both have both streams, so this one comes second.
  if (compound.stream("Book")) refuseAs("a workbook of version 5.0/95");
  // An .xlsx with a password is a compound file around the encrypted archive.
  if (compound.stream("EncryptedPackage")) {
    refuse("The workbook is protected with a password; save it without one");
  }
  refuse("The file is a document of another application; it holds no workbook");
}

}  // namespace velk::xls
