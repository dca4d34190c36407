#include "platform/native/native_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>

#include "platform/native/descriptor.h"
#include "platform/native/native_sync.h"

namespace velk {

namespace {

namespace fs = std::filesystem;

class NativeInput final : public InputFile {
 public:
  explicit NativeInput(Descriptor file)
      : file_(std::move(file)),
        length_(static_cast<std::uint64_t>(regularFileStatus(file_).st_size)) {}

  std::uint64_t length() const override { return length_; }

  std::size_t read(char* to, std::size_t count) override {
    std::size_t done = 0;
    while (done < count) {
      // May give less than asked for, long before the end of the file.
      const ssize_t n = required([&] { return ::read(file_.get(), to + done, count - done); });
      if (n == 0) break;
      done += static_cast<std::size_t>(n);
    }
    return done;
  }

  void seek(std::uint64_t offset) override {
    required([&] { return ::lseek(file_.get(), static_cast<off_t>(offset), SEEK_SET); });
  }

 private:
  Descriptor file_;
  std::uint64_t length_;
};

class NativeOutput : public OutputFile {
 public:
  explicit NativeOutput(Descriptor file) : file_(std::move(file)) { regularFileStatus(file_); }

  void write(std::string_view bytes) override {
    while (!bytes.empty()) {
      bytes.remove_prefix(static_cast<std::size_t>(
          required([&] { return ::write(file_.get(), bytes.data(), bytes.size()); })));
    }
  }

  void close() override {
    // Released first, because a descriptor is gone even if closing it reports an error; after a
    // signal nothing else is wrong.
    if (file_ && ::close(file_.release()) != 0 && errno != EINTR) throw fileError(errno);
  }

 protected:
  Descriptor file_;
};

/// A name that no file has, in the folder of `path`: a file is renamed only within a file system.
std::string freeNameBeside(std::string_view path) {
  const std::string start =
      std::string(path.substr(0, path.rfind('/') + 1)) + "~" + std::to_string(::getpid()) + "-";
  for (int number = 1;; ++number) {
    std::string name = start + std::to_string(number) + ".tmp";
    std::error_code ignored;
    // Not following links: a link that leads nowhere occupies its name, too.
    if (!fs::exists(fs::symlink_status(name, ignored))) return name;
  }
}

class NativeReplacement final : public NativeOutput {
 public:
  // O_EXCL, because another process may have taken the name since it was found free. Once the file
  // is made nothing takes memory: it would stay if there were none.
  NativeReplacement(std::string path, std::string name)
      : NativeOutput(openDescriptor(name, O_WRONLY | O_CREAT | O_EXCL)),
        path_(std::move(path)),
        name_(std::move(name)) {}
  ~NativeReplacement() override {
    if (!moved_) ::unlink(name_.c_str());
  }

  void close() override {
    if (moved_) return;
    // Waits until the disk has it; otherwise a crash could leave an empty file in the old one's
    // place.
    required([&] { return ::fsync(file_.get()); });
    NativeOutput::close();
    required([&] { return ::rename(name_.c_str(), path_.c_str()); });
    moved_ = true;
    // The file is there by now: what finds no memory must not call it missing.
    ignoringFailure([&] { syncFolderOf(path_); });
  }

 private:
  std::string path_;
  std::string name_;
  bool moved_ = false;
};

/// A folder, a device or a pipe can't be replaced, nor a file that the user may not write, though
/// renaming would be allowed to.
void checkReplaceable(const std::string& path) {
  struct stat status {};
  // c_str() would end there and name another file.
  if (path.find('\0') != std::string::npos) throw RuntimeError(ErrorNumber::FileNotFound);
  if (path.empty() || path.back() == '/') throw RuntimeError(ErrorNumber::PathFileAccess);
  if (::stat(path.c_str(), &status) != 0) {
    if (errno == ENOENT) return;
    throw fileError(errno);
  }
  if (!S_ISREG(status.st_mode)) throw RuntimeError(ErrorNumber::PathFileAccess);
  // access() would ask for the real user, but open() checks the effective one.
  if (::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0) throw fileError(errno);
}

}  // namespace

std::unique_ptr<InputFile> NativeFileSystem::openInput(std::string_view path) {
  return std::make_unique<NativeInput>(openDescriptor(path, O_RDONLY));
}

std::unique_ptr<OutputFile> NativeFileSystem::openAppend(std::string_view path) {
  return std::make_unique<NativeOutput>(
      openDescriptor(path, O_WRONLY | O_APPEND | O_CREAT | O_NOFOLLOW));
}

std::unique_ptr<OutputFile> NativeFileSystem::openReplacement(std::string_view path) {
  checkReplaceable(std::string(path));
  return std::make_unique<NativeReplacement>(std::string(path), freeNameBeside(path));
}

bool NativeFileSystem::openExclusively(std::string_view path) {
  const std::string name(path);
  checkReplaceable(name);
  // Making it tells at once whether the file is new; asking first would leave a gap.
  constexpr int makeNew = O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC;
  const auto make = [&] { return ::open(name.c_str(), makeNew, newFileMode); };
  if (Descriptor(unlessInterrupted(make))) return true;
  const Descriptor file = openDescriptor(path, O_RDWR);
  // A lock of the open file, not of the process: another screen of this process is refused, too.
  // Length 0 reaches to the end of the file, however far that is. Closing ends the lock.
  struct flock whole {};
  whole.l_type = F_WRLCK;
  if (::fcntl(file.get(), F_OFD_SETLK, &whole) == 0) return false;
  if (errno == EAGAIN) throw RuntimeError(ErrorNumber::PermissionDenied);
  throw fileError(errno);
}

void NativeFileSystem::remove(std::string_view path) {
  if (::unlink(std::string(path).c_str()) != 0) throw fileError(errno);
}

}  // namespace velk
