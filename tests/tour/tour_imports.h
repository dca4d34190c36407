// The imports of the tour: what is clicked, and what a user is told.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velk {

/// Where things lie that the tour needs; full paths, because file dialogs change the current
/// folder.
struct Places {
  explicit Places(const std::wstring& pictureFolder);

  std::wstring pictures;
  std::wstring programs;  ///< the folder of this program, where all else is written
  std::wstring host = programs + L"opnimp_host.exe";
  std::wstring samples = programs + L"samples\\";
  std::wstring errorLog = programs + L"Error.log";
  std::wstring company = programs + L"company.db";
};

/// One import: where it is opened (by itself, the master screen), what is chosen, what the user is
/// told, where its result shows.
struct TourImport {
  std::string picture;  ///< how the names of its pictures begin
  const wchar_t* button = L"&Masters...";
  const wchar_t* title = L"Import - Bank & Branch";
  int type = 0;  ///< place in the master screen's list of types
  const wchar_t* typeTitle = nullptr;
  std::wstring file;  ///< full path
  bool remaps = false;
  bool exports = false;  ///< makes the file first: an export, edited
  std::vector<std::wstring> messages;
  std::string_view table;
};

std::vector<TourImport> tourImports(const Places& places);

/// What a user changes in an exported workbook: gives three salesmen other DS types, one of which
/// an import refuses, and saves the workbook under another name.
void editSalesmen(std::string_view from, std::string_view to);

}  // namespace velk
