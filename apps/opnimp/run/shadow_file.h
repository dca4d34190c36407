// The machine's files, one of which has other contents than on the disk: a screen that is to see a
// part of a file views it under the file's own name.
#pragma once

#include <memory>
#include <string>

#include "platform/native/native_files.h"

namespace velk {

class ShadowFile final : public FileSystem {
 public:
  /// What is written to `path` from now on stays in memory, and is what is read there.
  explicit ShadowFile(std::string path) : path_(std::move(path)) {}

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
  std::string contents_;
};

}  // namespace velk
