#include "platform/native/native_kept_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <limits>
#include <optional>
#include <utility>

#include "platform/native/descriptor.h"
#include "platform/native/mapped_room.h"
#include "platform/native/native_sync.h"

namespace velk {

namespace {

// One byte far behind any content: reading is never in the way of it, here as on Windows, where a
// locked part cannot be read.
struct flock writersLock() {
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_start = std::numeric_limits<off_t>::max() - 1;
  lock.l_len = 1;
  return lock;
}

class NativeKeptFile final : public KeptFile {
 public:
  explicit NativeKeptFile(Descriptor file) : file_(std::move(file)) {}
  ~NativeKeptFile() override { giveRoomBack(); }

  /// A lock of the open file, not of the process: a second one in this process is refused, too.
  void lock() {
    struct flock lock = writersLock();
    if (::fcntl(file_.get(), F_OFD_SETLK, &lock) == 0) return;
    if (errno == EAGAIN) throw RuntimeError(ErrorNumber::PermissionDenied);
    throw fileError(errno);
  }

  std::uint64_t length() const override {
    return static_cast<std::uint64_t>(regularFileStatus(file_).st_size);
  }

  std::size_t read(std::uint64_t offset, char* to, std::size_t count) const override {
    std::size_t done = 0;
    while (done < count) {
      const ssize_t n = required([&] {
        return ::pread(file_.get(), to + done, count - done, static_cast<off_t>(offset + done));
      });
      if (n == 0) break;
      done += static_cast<std::size_t>(n);
    }
    return done;
  }

  bool isWrittenElsewhere() const override {
    struct flock lock = writersLock();
    return ::fcntl(file_.get(), F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
  }

  void append(std::string_view bytes) override {
    if (!end_) end_ = length();
    if (room_.put(file_, *end_, bytes)) {
      *end_ += bytes.size();
      return;
    }
    giveRoomBack();
    while (!bytes.empty()) {
      // More than one call only where the disk is about to be full, or for gigabytes.
      const auto written = static_cast<std::size_t>(required([&] {
        return ::pwrite(file_.get(), bytes.data(), bytes.size(), static_cast<off_t>(*end_));
      }));
      *end_ += written;
      bytes.remove_prefix(written);
    }
  }

  // The pages of the room count as written with the file's others.
  void sync() override {
    required([&] { return ::fdatasync(file_.get()); });
  }

  void truncate(std::uint64_t length) override {
    room_.leave();
    required([&] { return ::ftruncate(file_.get(), static_cast<off_t>(length)); });
    end_ = length;
  }

 private:
  /// Zeros that stay behind because this fails are known as such when the file is read.
  void giveRoomBack() {
    if (!end_) return;
    room_.leave();
    ignoringFailure([&] { truncate(*end_); });
  }

  Descriptor file_;
  MappedRoom room_;
  std::optional<std::uint64_t> end_;  // of what was appended; empty: nothing was
};

/// The folders that are missing above a file, for their user only.
void makeFolders(const std::filesystem::path& folder) {
  if (folder.empty()) return;
  std::error_code error;
  if (std::filesystem::exists(folder, error)) return;
  makeFolders(folder.parent_path());
  constexpr mode_t ownersOnly = 0700;
  if (::mkdir(folder.c_str(), ownersOnly) != 0 && errno != EEXIST) throw fileError(errno);
  syncFolderOf(folder.string());
}

}  // namespace

std::unique_ptr<KeptFile> openKept(const std::string& path, KeptFor use) {
  if (use == KeptFor::Reading) {
    auto file = std::make_unique<NativeKeptFile>(openDescriptor(path, O_RDONLY));
    file->length();  // raises the error for what is no regular file
    return file;
  }
  const std::filesystem::path folder = std::filesystem::path(path).parent_path();
  makeFolders(folder);
  constexpr mode_t ownersOnly = 0600;
  auto file = std::make_unique<NativeKeptFile>(
      openDescriptor(path, O_RDWR | O_CREAT | O_NOFOLLOW, ownersOnly));
  if (file->length() == 0) syncFolderOf(path);
  file->lock();
  return file;
}

}  // namespace velk
