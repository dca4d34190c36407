// Everything that the system asks of the machine, in one bundle. It is handed in once, at the top;
// whoever makes it keeps the referenced objects alive for longer than the system.
#pragma once

#include <functional>
#include <memory>

#include "base/text.h"
#include "platform/database.h"
#include "platform/desktop.h"
#include "platform/files.h"
#include "platform/host_service.h"
#include "platform/spreadsheet.h"
#include "ui/form_shell.h"

namespace velk {

struct Platform {
  FileSystem& files;
  Desktop& desktop;
  FormShell& shell;
  const CodePage& codePage;
  /// Makes the host service object; error 429 when that fails.
  std::function<std::shared_ptr<HostService>()> createHostService;
  /// Starts the spreadsheet application, or its replacement.
  std::function<std::unique_ptr<Spreadsheet>()> createSpreadsheet;
};

}  // namespace velk
