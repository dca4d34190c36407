// The machine's files, one of which has other contents than on the disk: a screen sees the file as
// it was when the run read it, or a part of it, under the file's own name.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/native/native_files.h"

namespace velk {

class ShadowFile final : public FileSystem {
 public:
  /// What is read at `path` is `contents`, which live as long; what is written there from now on
  /// stays in memory, and takes their place.
  ShadowFile(std::string path, std::string_view contents)
      : path_(std::move(path)), contents_(contents) {}

  std::unique_ptr<InputFile> openInput(std::string_view path) override;
  std::unique_ptr<OutputFile> openAppend(std::string_view path) override {
    return files_.openAppend(path);
  }
  std::unique_ptr<OutputFile> openReplacement(std::string_view path) override;
  bool openExclusively(std::string_view path) override { return files_.openExclusively(path); }
  void remove(std::string_view path) override { files_.remove(path); }

 private:
  NativeFileSystem files_;
  std::string path_;
  std::string_view contents_;
  std::optional<std::string> written_;
};

}  // namespace velk
