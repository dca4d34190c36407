#include "platform/windows/windows_kept_file.h"

#include <windows.h>

#include <filesystem>
#include <system_error>
#include <utility>

#include "base/errors.h"
#include "platform/windows/handles.h"
#include "platform/windows/wide_text.h"
#include "platform/windows/windows_files.h"

namespace velk {

namespace {

/// Where a call reads, writes or locks.
OVERLAPPED placeAt(std::uint64_t offset) {
  OVERLAPPED place{};
  place.Offset = static_cast<DWORD>(offset);
  place.OffsetHigh = static_cast<DWORD>(offset >> 32);
  return place;
}

// One byte far behind any content: what is locked here cannot be read.
constexpr std::uint64_t lockOffset = std::uint64_t{1} << 62;

/// False while somebody else holds the lock.
bool tryLock(HANDLE file) {
  OVERLAPPED place = placeAt(lockOffset);
  constexpr DWORD how = LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY;
  return LockFileEx(file, how, 0, 1, 0, &place) != FALSE;
}

class WindowsKeptFile final : public KeptFile {
 public:
  explicit WindowsKeptFile(FileHandle file) : file_(std::move(file)) {}

  void lock() {
    if (!tryLock(file_.get())) throw RuntimeError(ErrorNumber::PermissionDenied);
  }

  std::uint64_t length() const override {
    LARGE_INTEGER size{};
    requireFileCall(GetFileSizeEx(file_.get(), &size));
    return static_cast<std::uint64_t>(size.QuadPart);
  }

  std::size_t read(std::uint64_t offset, char* to, std::size_t count) const override {
    std::size_t done = 0;
    while (done < count) {
      OVERLAPPED place = placeAt(offset + done);
      DWORD got = 0;
      const BOOL read = ReadFile(file_.get(), to + done, atMostOneCall(count - done), &got, &place);
      if (read == FALSE && GetLastError() == ERROR_HANDLE_EOF) break;
      requireFileCall(read);
      if (got == 0) break;
      done += got;
    }
    return done;
  }

  bool isWrittenElsewhere() const override {
    if (!tryLock(file_.get())) return true;
    OVERLAPPED place = placeAt(lockOffset);
    UnlockFileEx(file_.get(), 0, 1, 0, &place);
    return false;
  }

  void append(std::string_view bytes) override {
    while (!bytes.empty()) {
      OVERLAPPED place = placeAt(length());
      DWORD written = 0;
      requireFileCall(
          WriteFile(file_.get(), bytes.data(), atMostOneCall(bytes.size()), &written, &place));
      // A full disk may show as a short count without an error.
      if (written == 0) throw RuntimeError(ErrorNumber::DiskFull);
      bytes.remove_prefix(written);
    }
  }

  void sync() override { requireFileCall(FlushFileBuffers(file_.get())); }

  void truncate(std::uint64_t length) override {
    LARGE_INTEGER end{};
    end.QuadPart = static_cast<LONGLONG>(length);
    requireFileCall(SetFilePointerEx(file_.get(), end, nullptr, FILE_BEGIN));
    requireFileCall(SetEndOfFile(file_.get()));
  }

 private:
  FileHandle file_;
};

}  // namespace

// A folder of the user's profile is the user's only, and so is what is made in it.
std::unique_ptr<KeptFile> openKept(const std::string& path, KeptFor use) {
  if (use == KeptFor::Reading) {
    return std::make_unique<WindowsKeptFile>(openOnDisk(path, GENERIC_READ, OPEN_EXISTING));
  }
  std::error_code ignored;  // a folder that is missing still is told by the next call
  std::filesystem::create_directories(std::filesystem::path(toWide(path)).parent_path(), ignored);
  auto file = std::make_unique<WindowsKeptFile>(
      openOnDisk(path, GENERIC_READ | GENERIC_WRITE, OPEN_ALWAYS));
  file->lock();
  return file;
}

}  // namespace velk
