// XML, element by element, as a document of a workbook is read.
#pragma once

#include <string_view>

#include "platform/spreadsheet/zipped/zip_archive.h"

namespace velk {

/// The attributes of an element, by their names.
class XmlAttributes {
 public:
  explicit XmlAttributes(const char** pairs) : pairs_(pairs) {}
  /// Empty for one that there is not.
  std::string_view operator[](std::string_view name) const;
  bool has(std::string_view name) const;

 private:
  const char** pairs_;
};

/// Of an attribute that is true or false.
bool isXmlTrue(std::string_view value);

/// Hears of a document. Elements go by their names without a prefix; attributes by the prefix that
/// all programs write: "r:id".
class XmlHandler {
 public:
  virtual ~XmlHandler() = default;
  virtual void begin(std::string_view name, const XmlAttributes& attributes) = 0;
  virtual void end(std::string_view name) = 0;
  /// In pieces.
  virtual void text(std::string_view piece) = 0;
};

enum class Elements {
  OfRoot,  ///< those of the root's namespace: programs add others that have the same names
  All
};

/// Reads a part of an archive. Error 321 for one that there is not, is damaged or not well formed,
/// is nested too deep or declares anything of its own, such as entities: no workbook does. What the
/// handler throws is passed on.
void readXml(const ZipArchive& archive, std::string_view part, XmlHandler& handler,
             Elements wanted = Elements::OfRoot);

}  // namespace velk
