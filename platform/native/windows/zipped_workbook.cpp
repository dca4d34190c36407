#include "platform/spreadsheet/zipped/zipped_workbook.h"

#include <ole2.h>

#include <array>
#include <system_error>

#include "platform/native/native_privacy.h"
#include "platform/native/windows/excel_conversion.h"
#include "platform/spreadsheet/damage.h"
#include "platform/spreadsheet/xls/xls_spreadsheet.h"
#include "platform/utf8_path.h"
#include "platform/windows/wide_text.h"
#include "platform/windows/windows_files.h"

namespace velk {

namespace {

/// For files of this process that are nobody else's, gone with the object.
class PrivateFolder {
 public:
  PrivateFolder() {
    std::array<wchar_t, MAX_PATH + 1> all{};
    std::array<wchar_t, MAX_PATH> name{};
    GetTempPathW(static_cast<DWORD>(all.size()), all.data());
    // Makes a file, so that nobody else takes the name.
    requireFileCall(GetTempFileNameW(all.data(), L"opn", 0, name.data()) != 0);
    DeleteFileW(name.data());
    requireFileCall(CreateDirectoryW(name.data(), nullptr) != FALSE);
    path_ = fromWide(name.data());
    makePrivate(path_);
  }
  ~PrivateFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(toPath(path_), ignored);
  }
  PrivateFolder(const PrivateFolder&) = delete;
  PrivateFolder& operator=(const PrivateFolder&) = delete;

  std::string file(std::string_view name) const { return path_ + '\\' + std::string(name); }

 private:
  std::string path_;
};

/// COM in this thread, whether or not somebody has begun it.
class ComUse {
 public:
  ComUse() : result_(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)) {}
  ~ComUse() {
    if (SUCCEEDED(result_)) CoUninitialize();
  }
  ComUse(const ComUse&) = delete;
  ComUse& operator=(const ComUse&) = delete;

 private:
  HRESULT result_;
};

/// The application takes no file whose name says otherwise. This kind names itself at its start.
std::string_view nameFor(std::string_view file) {
  constexpr std::size_t start = 128;
  const bool isOpenDocument = file.substr(0, start).find("opendocument") != std::string_view::npos;
  return isOpenDocument ? "in.ods" : "in.xlsx";
}

std::string savedAsXls(std::string_view file) {
  const ComUse com;
  const PrivateFolder folder;
  const std::string given = folder.file(nameFor(file));
  const std::string saved = folder.file("out.xls");
  WindowsFileSystem files;
  const auto output = files.openReplacement(given);
  output->write(file);
  output->close();
  if (!saveAsXls(given, saved)) {
    refuse(
        "The spreadsheet application, which reads workbooks of this kind here, is not installed; "
        "save it as .xls or CSV on a machine that has one");
  }
  const auto input = files.openInput(saved);
  std::string bytes(static_cast<std::size_t>(input->length()), '\0');
  bytes.resize(input->read(bytes.data(), bytes.size()));
  return bytes;
}

}  // namespace

std::size_t bytesToRead(std::string_view file) {
  return file.size();  // the application looks at them
}

void readZippedSheets(std::string_view file, SheetSink& sink) {
  readXlsSheets(savedAsXls(file), sink);
}

}  // namespace velk
