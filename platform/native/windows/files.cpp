// The machine's files are the component's, whose paths are UTF-8 here, too.
#include "platform/windows/windows_files.h"

#include "platform/native/native_files.h"

namespace velk {

std::unique_ptr<InputFile> NativeFileSystem::openInput(std::string_view path) {
  return WindowsFileSystem().openInput(path);
}

std::unique_ptr<OutputFile> NativeFileSystem::openAppend(std::string_view path) {
  return WindowsFileSystem().openAppend(path);
}

std::unique_ptr<OutputFile> NativeFileSystem::openReplacement(std::string_view path) {
  return WindowsFileSystem().openReplacement(path);
}

bool NativeFileSystem::openExclusively(std::string_view path) {
  return WindowsFileSystem().openExclusively(path);
}

void NativeFileSystem::remove(std::string_view path) {
  WindowsFileSystem().remove(path);
}

}  // namespace velk
