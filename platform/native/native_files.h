// The machine's own files, through POSIX calls.
#pragma once

#include "platform/files.h"

namespace velk {

class NativeFileSystem final : public FileSystem {
 public:
  /// Only regular files open; a folder, a device or a pipe is error 75, so that no read can wait
  /// for ever.
  std::unique_ptr<InputFile> openInput(std::string_view path) override;
  std::unique_ptr<OutputFile> openAppend(std::string_view path) override;
  std::unique_ptr<OutputFile> openReplacement(std::string_view path) override;
  bool openExclusively(std::string_view path) override;
  void remove(std::string_view path) override;
};

}  // namespace velk
