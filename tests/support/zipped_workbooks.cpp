#include "tests/support/zipped_workbooks.h"

#include <zlib.h>

#include <charconv>
#include <cstdint>

#include "base/dates.h"
#include "platform/spreadsheet/little_endian.h"
#include "platform/spreadsheet/zipped/iso_date.h"

namespace velk {

namespace {

std::string packed(std::string_view bytes) {
  z_stream stream{};
  deflateInit2(&stream, 9, Z_DEFLATED, -MAX_WBITS, 9, Z_DEFAULT_STRATEGY);
  std::string to(deflateBound(&stream, bytes.size()), '\0');
  stream.next_in = reinterpret_cast<unsigned char*>(const_cast<char*>(bytes.data()));
  stream.avail_in = static_cast<uInt>(bytes.size());
  stream.next_out = reinterpret_cast<unsigned char*>(to.data());
  stream.avail_out = static_cast<uInt>(to.size());
  deflate(&stream, Z_FINISH);
  to.resize(stream.total_out);
  deflateEnd(&stream);
  return to;
}

template <class... Numbers>
void append(std::string& to, Numbers... numbers) {
  (appendNumber(to, numbers), ...);
}

using U16 = std::uint16_t;
using U32 = std::uint32_t;

std::string escaped(std::string_view text) {
  std::string to;
  for (const char c : text) to += c == '&' ? "&amp;" : c == '<' ? "&lt;" : std::string(1, c);
  return to;
}

struct TestCell {
  char mark;  // 0 of a text
  std::string_view text;
  std::string place;  // such as "B5"
};

template <class Use>
void eachCell(const std::string& row, std::size_t number, Use use) {
  std::size_t column = 0;
  for (std::size_t at = 0; at <= row.size(); ++column) {
    const std::size_t end = std::min(row.find('|', at), row.size());
    const std::string_view text = std::string_view(row).substr(at, end - at);
    at = end + 1;
    const bool isMarked = !text.empty() && std::string_view("#$%?!").find(text[0]) < 5;
    use(TestCell{isMarked ? text[0] : '\0', text.substr(isMarked ? 1 : 0),
                 static_cast<char>('A' + column) + std::to_string(number)});
  }
}

std::string fiveDigits(std::string_view number) {
  return std::string(5 - number.size(), '0').append(number);
}

std::string xlsxCell(const TestCell& cell) {
  const std::string text(cell.text);
  const std::string value = "<v>" + text + "</v>";
  const std::string begin = "<c r=\"" + cell.place + "\"";
  switch (cell.mark) {
    case '#':
      return begin + " s=\"1\"><v>" + std::to_string(*isoDays(text)) + "</v></c>";
    case '$':
      return begin + " s=\"2\">" + value + "</c>";
    case '%':
      return begin + " s=\"3\">" + value + "</c>";
    case '?':
      return begin + "><f>F1</f>" + (text.empty() ? "" : value) + "</c>";
    case '!':
      return begin + " t=\"e\"><f>1/0</f>" + value + "</c>";
    default:
      return text.empty() ? ""
                          : begin + " t=\"inlineStr\"><is><t>" + escaped(text) + "</t></is></c>";
  }
}

std::string odsCell(const TestCell& cell) {
  const std::string text(cell.text);
  const std::string number = " office:value-type=\"float\" office:value=\"" + text + "\"";
  const auto made = [](const std::string& attributes, const std::string& shown) {
    return "<table:table-cell" + attributes + "><text:p>" + shown + "</text:p></table:table-cell>";
  };
  switch (cell.mark) {
    case '#':
      return made(" office:value-type=\"date\" office:date-value=\"" + text + "\"", "shown so");
    case '$':
      return made(number, "1,1");
    case '%':
      return made(number, fiveDigits(text));
    case '?':
      return "<table:table-cell table:formula=\"F1\"" + (text.empty() ? "" : number) + "/>";
    case '!':
      return made(" table:formula=\"F1\" office:value-type=\"string\" calcext:value-type=\"error\"",
                  text);
    default:
      return text.empty() ? "<table:table-cell/>"
                          : made(" office:value-type=\"string\"", escaped(text));
  }
}

}  // namespace

std::string zipped(const ZipParts& parts) {
  std::string file;
  std::string list;
  for (const auto& [name, bytes] : parts) {
    const std::string stored = packed(bytes);
    const auto checksum = static_cast<U32>(crc32(
        0, reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<uInt>(bytes.size())));
    const auto offset = static_cast<U32>(file.size());
    std::string common;
    append(common, U16{20}, U16{0}, U16{8}, U32{0}, checksum, static_cast<U32>(stored.size()),
           static_cast<U32>(bytes.size()), static_cast<U16>(name.size()), U16{0});
    file += "PK\x03\x04" + common + name + stored;
    list.append("PK\x01\x02\x14", 5).append(1, '\0').append(common);
    append(list, U16{0}, U16{0}, U16{0}, U32{0}, offset);
    list += name;
  }
  std::string end = "PK\x05\x06";
  const auto count = static_cast<U16>(parts.size());
  append(end, U16{0}, U16{0}, count, count, static_cast<U32>(list.size()),
         static_cast<U32>(file.size()), U16{0});
  return file + list + end;
}

ZipParts xlsxParts(const std::vector<TestSheet>& sheets) {
  std::string workbook = "<workbook xmlns:r=\"r\"><sheets>";
  std::string relations =
      "<Relationships><Relationship Id=\"styles\" Type=\"t/styles\" Target=\"/xl/styles.xml\"/>";
  ZipParts parts{{"_rels/.rels",
                  "<Relationships><Relationship Id=\"w\" Type=\"t/officeDocument\" "
                  "Target=\"xl/workbook.xml\"/></Relationships>"},
                 {"xl/styles.xml",
                  "<styleSheet><numFmts><numFmt numFmtId=\"164\" formatCode=\"00000\"/></numFmts>"
                  "<cellXfs><xf numFmtId=\"0\"/><xf numFmtId=\"14\"/><xf numFmtId=\"4\"/>"
                  "<xf numFmtId=\"164\"/></cellXfs></styleSheet>"}};
  for (const TestSheet& sheet : sheets) {
    const std::string number = std::to_string(parts.size());
    workbook += "<sheet name=\"" + sheet.name + "\" r:id=\"s" + number + "\"" +
                (sheet.isHidden ? " state=\"hidden\"/>" : "/>");
    relations += "<Relationship Id=\"s" + number + "\" Type=\"t/worksheet\" Target=\"sheet" +
                 number + ".xml\"/>";
    std::string data;
    for (std::size_t row = 1; row <= sheet.rows.size(); ++row) {
      data += "<row>";
      eachCell(sheet.rows[row - 1], row, [&](const TestCell& cell) { data += xlsxCell(cell); });
      data += "</row>";
    }
    parts.push_back({"xl/sheet" + number + ".xml",
                     "<worksheet><sheetData>" + data + "</sheetData></worksheet>"});
  }
  parts.push_back({"xl/workbook.xml", workbook + "</sheets></workbook>"});
  parts.push_back({"xl/_rels/workbook.xml.rels", relations + "</Relationships>"});
  return parts;
}

ZipParts odsParts(const std::vector<TestSheet>& sheets) {
  std::string content =
      "<office:document-content xmlns:office=\"o\" xmlns:table=\"t\" xmlns:text=\"x\""
      " xmlns:style=\"s\" xmlns:calcext=\"c\"><office:automatic-styles><style:style "
      "style:name=\"out\">"
      "<style:table-properties table:display=\"false\"/></style:style></office:automatic-styles>"
      "<office:body><office:spreadsheet>";
  for (const TestSheet& sheet : sheets) {
    content += "<table:table table:name=\"" + sheet.name + "\"" +
               (sheet.isHidden ? " table:style-name=\"out\">" : ">");
    for (const std::string& row : sheet.rows) {
      content += "<table:table-row>";
      eachCell(row, 1, [&](const TestCell& cell) { content += odsCell(cell); });
      content += "</table:table-row>";
    }
    content += "</table:table>";
  }
  return {
      {"mimetype", "application/vnd.oasis.opendocument.spreadsheet"},
      {"content.xml", content + "</office:spreadsheet></office:body></office:document-content>"}};
}

}  // namespace velk
