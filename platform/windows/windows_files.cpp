#include "platform/windows/windows_files.h"

#include <algorithm>
#include <atomic>
#include <limits>
#include <utility>

#include "platform/windows/wide_text.h"

namespace velk {

namespace {

std::wstring fullPath(const std::wstring& name) {
  // The first call answers the length with the NUL, the second one without it.
  std::wstring full(GetFullPathNameW(name.c_str(), 0, nullptr, nullptr), L'\0');
  full.resize(
      GetFullPathNameW(name.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
  return full.empty() ? name : full;
}

/// The path as Windows takes it: one of 260 characters or more needs the prefix "\\?\".
std::wstring acceptablePath(std::string_view name) {
  std::wstring path = toWide(name);
  if (path.size() < MAX_PATH || path.starts_with(L"\\\\?\\")) return path;
  const std::wstring full = fullPath(path);
  // "\\server\share" has to become "\\?\UNC\server\share".
  return full.starts_with(L"\\\\") ? L"\\\\?\\UNC" + full.substr(1) : L"\\\\?\\" + full;
}

bool isFolder(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

class WindowsInput final : public InputFile {
 public:
  explicit WindowsInput(FileHandle file) : file_(std::move(file)) {
    LARGE_INTEGER size{};
    requireFileCall(GetFileSizeEx(file_.get(), &size));
    length_ = static_cast<std::uint64_t>(size.QuadPart);
  }

  std::uint64_t length() const override { return length_; }

  std::size_t read(char* to, std::size_t count) override {
    std::size_t done = 0;
    while (done < count) {
      DWORD got = 0;
      requireFileCall(ReadFile(file_.get(), to + done, atMostOneCall(count - done), &got, nullptr));
      // No bytes and no error: the end of the file.
      if (got == 0) break;
      done += got;
    }
    return done;
  }

  void seek(std::uint64_t offset) override {
    LARGE_INTEGER to{};
    to.QuadPart = static_cast<LONGLONG>(offset);
    requireFileCall(SetFilePointerEx(file_.get(), to, nullptr, FILE_BEGIN));
  }

 private:
  FileHandle file_;
  std::uint64_t length_ = 0;
};

class WindowsOutput final : public OutputFile {
 public:
  explicit WindowsOutput(FileHandle file) : file_(std::move(file)) {}

  void write(std::string_view bytes) override {
    while (!bytes.empty()) {
      DWORD written = 0;
      requireFileCall(
          WriteFile(file_.get(), bytes.data(), atMostOneCall(bytes.size()), &written, nullptr));
      // A full disk may show as a short count without an error.
      if (written == 0) throw RuntimeError(ErrorNumber::DiskFull);
      bytes.remove_prefix(written);
    }
  }

  HANDLE handle() const { return file_.get(); }
  /// Waits until the disk has it; Windows alone may lose it with the power.
  void flush() { requireFileCall(FlushFileBuffers(file_.get())); }

  void close() override {
    if (file_) requireFileCall(CloseHandle(file_.release()));
  }

 private:
  FileHandle file_;
};

/// Keeps others that add to a file waiting. Windows, which adds to the end in one step, denies it
/// to who may do nothing else; Wine looks for the end first, and grants it.
class AppendLock {
 public:
  explicit AppendLock(HANDLE file)
      : file_(file),
        isHeld_(LockFileEx(file, LOCKFILE_EXCLUSIVE_LOCK, 0, 1, 0, &place_) != FALSE) {}
  ~AppendLock() {
    if (isHeld_) UnlockFileEx(file_, 0, 1, 0, &place_);
  }
  AppendLock(const AppendLock&) = delete;
  AppendLock& operator=(const AppendLock&) = delete;

 private:
  /// A byte that no file has, so that nobody is kept from reading.
  static OVERLAPPED farAway() {
    OVERLAPPED place{};
    place.Offset = std::numeric_limits<DWORD>::max();
    place.OffsetHigh = std::numeric_limits<LONG>::max();
    return place;
  }

  HANDLE file_;
  OVERLAPPED place_ = farAway();
  bool isHeld_;
};

class WindowsAppend final : public OutputFile {
 public:
  explicit WindowsAppend(FileHandle file) : output_(std::move(file)) {}

  void write(std::string_view bytes) override {
    const AppendLock lock(output_.handle());
    output_.write(bytes);
  }
  void close() override { output_.close(); }

 private:
  WindowsOutput output_;
};

/// A name in the folder of `path` that no file has. With the process and a count in it, no other
/// program or call can choose the same.
std::string freeNameBeside(std::string_view path, std::string_view ending) {
  static std::atomic<unsigned> count{0};
  for (;;) {
    std::string name = std::string(path) + "." + std::to_string(GetCurrentProcessId()) + "-" +
                       std::to_string(++count) + std::string(ending);
    if (GetFileAttributesW(acceptablePath(name).c_str()) == INVALID_FILE_ATTRIBUTES) {
      return name;
    }
  }
}

/// A folder or a device can't be replaced, nor a file that is write-protected or that another
/// program has open: better to learn that before the work than after it.
void checkReplaceable(std::string_view path) {
  const std::wstring name = acceptablePath(path);
  if (GetFileAttributesW(name.c_str()) == INVALID_FILE_ATTRIBUTES) return;
  openOnDisk(path, GENERIC_WRITE, OPEN_EXISTING);
}

class WindowsReplacement final : public OutputFile {
 public:
  explicit WindowsReplacement(std::string_view path)
      : replacement_(path, ".new"),
        file_(openOnDisk(replacement_.path(), GENERIC_WRITE, CREATE_NEW)) {}

  void write(std::string_view bytes) override { file_.write(bytes); }

  void close() override {
    if (moved_) return;
    // On the disk before it replaces the old file, so that a power cut leaves one of the two whole.
    file_.flush();
    file_.close();
    replacement_.moveInPlace();
    moved_ = true;
  }

 private:
  FileReplacement replacement_;  // before the file, because an open file can't be removed
  WindowsOutput file_;
  bool moved_ = false;
};

}  // namespace

RuntimeError fileError(std::uint32_t errorCode) {
  static constexpr std::pair<DWORD, ErrorNumber> known[] = {
      {ERROR_FILE_NOT_FOUND, ErrorNumber::FileNotFound},
      {ERROR_PATH_NOT_FOUND, ErrorNumber::PathNotFound},
      {ERROR_INVALID_DRIVE, ErrorNumber::PathNotFound},
      {ERROR_BAD_NETPATH, ErrorNumber::PathNotFound},
      {ERROR_BAD_NET_NAME, ErrorNumber::PathNotFound},
      {ERROR_DIRECTORY, ErrorNumber::PathNotFound},
      {ERROR_ACCESS_DENIED, ErrorNumber::PermissionDenied},
      {ERROR_SHARING_VIOLATION, ErrorNumber::PermissionDenied},
      {ERROR_LOCK_VIOLATION, ErrorNumber::PermissionDenied},
      {ERROR_WRITE_PROTECT, ErrorNumber::PathFileAccess},
      {ERROR_CANT_RESOLVE_FILENAME, ErrorNumber::PathFileAccess},
      {ERROR_INVALID_PARAMETER, ErrorNumber::PathFileAccess},
      {ERROR_INVALID_NAME, ErrorNumber::BadFileNameOrNumber},
      {ERROR_BAD_PATHNAME, ErrorNumber::BadFileNameOrNumber},
      {ERROR_FILENAME_EXCED_RANGE, ErrorNumber::BadFileNameOrNumber},
      {ERROR_TOO_MANY_OPEN_FILES, ErrorNumber::TooManyFiles},
      {ERROR_DISK_FULL, ErrorNumber::DiskFull},
      {ERROR_HANDLE_DISK_FULL, ErrorNumber::DiskFull},
      {ERROR_FILE_TOO_LARGE, ErrorNumber::DiskFull},
      {ERROR_NOT_ENOUGH_MEMORY, ErrorNumber::OutOfMemory},
      {ERROR_OUTOFMEMORY, ErrorNumber::OutOfMemory}};
  const auto* const found =
      std::ranges::find(known, errorCode, &std::pair<DWORD, ErrorNumber>::first);
  return RuntimeError(found == std::end(known) ? ErrorNumber::DeviceIo : found->second);
}

void requireFileCall(bool succeeded) {
  if (!succeeded) throw fileError(GetLastError());
}

std::string absolutePath(std::string_view path) {
  return fromWide(fullPath(toWide(path)));
}

// Without FILE_SHARE_DELETE no one can rename or remove a file while it is open here.
FileHandle openOnDisk(std::string_view path, DWORD access, DWORD disposition, DWORD sharing) {
  // Windows would take the part before a NUL and open another file.
  if (path.find('\0') != std::string_view::npos) throw RuntimeError(ErrorNumber::FileNotFound);
  const std::wstring name = acceptablePath(path);
  FileHandle file(CreateFileW(name.c_str(), access, sharing, nullptr, disposition,
                              FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) {
    const DWORD failure = GetLastError();  // before the next call replaces it
    // Windows refuses a folder with the same code as a protected file.
    if (isFolder(name)) throw RuntimeError(ErrorNumber::PathFileAccess);
    throw fileError(failure);
  }
  // Names such as "CON" and "NUL" open like files, too.
  if (GetFileType(file.get()) != FILE_TYPE_DISK) throw RuntimeError(ErrorNumber::PathFileAccess);
  return file;
}

DWORD atMostOneCall(std::size_t count) {
  constexpr std::size_t most = std::size_t{1} << 30U;
  return static_cast<DWORD>(std::min(count, most));
}

FileReplacement::FileReplacement(std::string_view path, std::string_view ending)
    : target_(path), path_(freeNameBeside(path, ending)) {
  checkReplaceable(path);
}

FileReplacement::~FileReplacement() {
  // After the move no file has this name, and that failure does not matter.
  DeleteFileW(acceptablePath(path_).c_str());
}

void FileReplacement::moveInPlace() {
  // WRITE_THROUGH: the call returns after the disk has the move, too.
  constexpr DWORD inPlace = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
  const std::wstring from = acceptablePath(path_);
  requireFileCall(MoveFileExW(from.c_str(), acceptablePath(target_).c_str(), inPlace));
}

std::unique_ptr<InputFile> WindowsFileSystem::openInput(std::string_view path) {
  return std::make_unique<WindowsInput>(openOnDisk(path, GENERIC_READ, OPEN_EXISTING));
}

std::unique_ptr<OutputFile> WindowsFileSystem::openAppend(std::string_view path) {
  // Without the right to write elsewhere every write goes to the end, even when another process
  // writes to the file at the same time.
  constexpr DWORD appendOnly = FILE_APPEND_DATA | SYNCHRONIZE;
  return std::make_unique<WindowsAppend>(openOnDisk(path, appendOnly, OPEN_ALWAYS));
}

std::unique_ptr<OutputFile> WindowsFileSystem::openReplacement(std::string_view path) {
  return std::make_unique<WindowsReplacement>(path);
}

bool WindowsFileSystem::openExclusively(std::string_view path) {
  constexpr DWORD access = GENERIC_READ | GENERIC_WRITE;
  constexpr DWORD alone = 0;
  try {
    // First as a new file: only so the answer tells whether this call has made it.
    openOnDisk(path, access, CREATE_NEW, alone);
    return true;
  } catch (const RuntimeError&) {
    openOnDisk(path, access, OPEN_EXISTING, alone);
    return false;
  }
}

void WindowsFileSystem::remove(std::string_view path) {
  requireFileCall(DeleteFileW(acceptablePath(path).c_str()));
}

}  // namespace velk
