#include "platform/windows/windows_desktop.h"

#include <windows.h>

#include <cderr.h>
#include <commdlg.h>

#include <algorithm>
#include <array>

#include "base/errors.h"
#include "platform/windows/modal_owner.h"
#include "platform/windows/pending_input.h"
#include "platform/windows/wide_text.h"

namespace velk {

namespace {

constexpr std::size_t longestPath = 32'767;  // what Windows' file system allows

// "description|pattern|..." with NUL for each bar, and one more at the end.
std::wstring filterText(std::string_view filter) {
  std::wstring text = toWide(filter);
  std::ranges::replace(text, L'|', L'\0');
  return text.append(2, L'\0');
}

// What a name without one gets: the first pattern's, unless that is a wildcard, too.
std::wstring defaultExtension(std::string_view filter) {
  const std::size_t pattern = filter.find("|*.");
  if (pattern == std::string_view::npos) return {};
  const std::string_view extension = filter.substr(pattern + 3);
  return toWide(extension.substr(0, extension.find_first_of("|;*?")));
}

bool ask(FileDialogKind kind, OPENFILENAMEW& settings) {
  return (kind == FileDialogKind::Open ? GetOpenFileNameW(&settings)
                                       : GetSaveFileNameW(&settings)) != FALSE;
}

}  // namespace

std::optional<std::string> WindowsDesktop::askForFile(const FileDialog& dialog) {
  const std::wstring title = toWide(dialog.title);
  const std::wstring filter = filterText(dialog.filter);
  const std::wstring folder = toWide(dialog.initialFolder);
  const std::wstring extension = defaultExtension(dialog.filter);
  std::wstring path = toWide(dialog.fileName);
  // The dialog writes its answer into the same buffer.
  path.resize(longestPath);
  dropPendingInput();
  const ModalOwner owner;
  OPENFILENAMEW settings{};
  settings.lStructSize = sizeof settings;
  settings.hwndOwner = owner.window();
  settings.lpstrFilter = dialog.filter.empty() ? nullptr : filter.c_str();
  settings.nFilterIndex = static_cast<DWORD>(dialog.filterIndex);
  settings.lpstrFile = path.data();
  settings.nMaxFile = static_cast<DWORD>(path.size());
  settings.lpstrInitialDir = folder.empty() ? nullptr : folder.c_str();
  settings.lpstrTitle = title.empty() ? nullptr : title.c_str();
  settings.lpstrDefExt = extension.empty() ? nullptr : extension.c_str();
  // NOCHANGEDIR, because the current folder belongs to the host's process.
  settings.Flags = OFN_EXPLORER | OFN_HIDEREADONLY | OFN_NOCHANGEDIR | OFN_PATHMUSTEXIST |
                   (dialog.kind == FileDialogKind::Open ? OFN_FILEMUSTEXIST : OFN_OVERWRITEPROMPT);
  bool chosen = ask(dialog.kind, settings);
  if (!chosen && CommDlgExtendedError() == FNERR_INVALIDFILENAME) {
    path.front() = L'\0';  // the text of the text box may be no file name at all
    chosen = ask(dialog.kind, settings);
  }
  if (chosen) return fromWide(path.c_str());
  // No answer and no error: the user has cancelled.
  if (CommDlgExtendedError() == 0) return std::nullopt;
  throw RuntimeError(ErrorNumber::InvalidProcedureCall, "The file dialog could not be shown");
}

}  // namespace velk
