#include "platform/spreadsheet/zipped/xlsx_parts.h"

#include <map>

#include "platform/spreadsheet/damage.h"
#include "platform/spreadsheet/zipped/xml_reader.h"

namespace velk {

namespace {

struct Relation {
  std::string type;  // the last part of its address
  std::string part;  // empty: it leads out of the file
};
using Relations = std::map<std::string, Relation, std::less<>>;

std::string folderOf(std::string_view part) {
  return std::string(part.substr(0, part.rfind('/') + 1));
}

/// Where a target leads that stands in a part of a folder; no folder is left but at its start.
std::string partAt(const std::string& folder, std::string_view target) {
  if (target.starts_with('/')) return std::string(target.substr(1));
  std::string from = folder;
  while (target.starts_with("./") || (target.starts_with("../") && !from.empty())) {
    if (target.starts_with("../")) {
      from = folderOf(std::string_view(from).substr(0, from.size() - 1));
    }
    target.remove_prefix(target.find('/') + 1);
  }
  return from.append(target);
}

class RelationsHandler final : public XmlHandler {
 public:
  RelationsHandler(std::string folder, Relations& to) : folder_(std::move(folder)), to_(to) {}

  void begin(std::string_view name, const XmlAttributes& attributes) override {
    if (name != "Relationship") return;
    const std::string_view type = attributes["Type"];
    const bool isOutside = attributes["TargetMode"] == "External";
    to_[std::string(attributes["Id"])] = {std::string(type.substr(type.rfind('/') + 1)),
                                          isOutside ? "" : partAt(folder_, attributes["Target"])};
  }
  void end(std::string_view /*name*/) override {}
  void text(std::string_view /*piece*/) override {}

 private:
  std::string folder_;
  Relations& to_;
};

class WorkbookHandler final : public XmlHandler {
 public:
  WorkbookHandler(const Relations& relations, XlsxParts& parts)
      : relations_(relations), parts_(parts) {}

  void begin(std::string_view name, const XmlAttributes& attributes) override {
    if (!isWorkbook_ && name != "workbook") refuse("The file is no workbook");
    isWorkbook_ = true;
    if (name == "workbookPr") parts_.from1904 = isXmlTrue(attributes["date1904"]);
    if (name == "calcPr") parts_.recalculates = isXmlTrue(attributes["fullCalcOnLoad"]);
    if (name == "sheet") addSheet(attributes);
  }
  void end(std::string_view /*name*/) override {}
  void text(std::string_view /*piece*/) override {}

 private:
  void addSheet(const XmlAttributes& attributes) {
    const auto found = relations_.find(attributes["r:id"]);
    if (found == relations_.end()) damaged("a sheet is missing");
    if (found->second.type != "worksheet") return;
    const std::string_view state = attributes["state"];
    parts_.sheets.push_back({std::string(attributes["name"]), !state.empty() && state != "visible",
                             found->second.part});
  }

  const Relations& relations_;
  XlsxParts& parts_;
  bool isWorkbook_ = false;
};

Relations relationsOf(const ZipArchive& archive, const std::string& part) {
  const std::string folder = folderOf(part);
  Relations relations;
  RelationsHandler handler(folder, relations);
  readXml(archive, folder + "_rels/" + part.substr(folder.size()) + ".rels", handler);
  return relations;
}

std::string partOf(const Relations& relations, std::string_view type) {
  for (const auto& [id, relation] : relations) {
    if (relation.type == type) return relation.part;
  }
  return {};
}

}  // namespace

XlsxParts readXlsxParts(const ZipArchive& archive) {
  const std::string workbook = partOf(relationsOf(archive, ""), "officeDocument");
  if (workbook.ends_with(".bin")) {
    refuse("The file is an .xlsb workbook; save it as an Excel workbook (*.xlsx)");
  }
  const Relations relations = relationsOf(archive, workbook);
  XlsxParts parts;
  parts.texts = partOf(relations, "sharedStrings");
  parts.styles = partOf(relations, "styles");
  WorkbookHandler handler(relations, parts);
  readXml(archive, workbook, handler);
  if (parts.sheets.empty()) refuse("The workbook has no worksheet");
  return parts;
}

}  // namespace velk
