#include "apps/opnimp/journal/journal_file.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>
#include <vector>

#include "apps/opnimp/journal/crc32c.h"
#include "base/errors.h"

namespace velk {

namespace {

constexpr std::string_view signature = "OPNIMPJ1";
constexpr std::size_t numberSize = 4;
constexpr std::size_t headSize = numberSize + 1;          // length and type
constexpr std::size_t frameSize = headSize + numberSize;  // and the checksum

void addNumber(std::string& to, std::uint32_t number) {
  std::array<char, numberSize> bytes{};
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(number >> (8 * i));
  to.append(bytes.data(), bytes.size());
}

std::uint32_t numberAt(std::string_view bytes, std::size_t at) {
  std::uint32_t number = 0;
  for (std::size_t byte = numberSize; byte-- > 0;) {
    number = (number << 8) | static_cast<unsigned char>(bytes[at + byte]);
  }
  return number;
}

/// What lies before the reader, read from the file in large pieces.
class Window {
 public:
  Window(const KeptFile& file, std::uint64_t length) : file_(file), length_(length) {}

  std::uint64_t offset() const { return offset_; }
  std::uint64_t left() const { return length_ - offset_; }
  void skip(std::uint64_t count) { offset_ += count; }

  /// The next `count` bytes, of which there have to be as many.
  std::string_view peek(std::size_t count) {
    if (offset_ < start_ || offset_ + count > start_ + bytes_.size()) fill(count);
    return std::string_view(bytes_).substr(static_cast<std::size_t>(offset_ - start_), count);
  }

 private:
  void fill(std::size_t count) {
    constexpr std::size_t pieceSize = std::size_t{1} << 20;
    start_ = offset_;
    bytes_.resize(
        static_cast<std::size_t>(std::min<std::uint64_t>(left(), std::max(count, pieceSize))));
    const std::size_t got = file_.read(start_, bytes_.data(), bytes_.size());
    // The file may be shorter by now: its missing end must not pass for an entry.
    std::fill(bytes_.begin() + static_cast<std::ptrdiff_t>(got), bytes_.end(), '\0');
  }

  const KeptFile& file_;
  std::uint64_t length_;
  std::uint64_t offset_ = 0;
  std::uint64_t start_ = 0;  // of bytes_ in the file
  std::string bytes_;
};

bool isOnlyRoom(Window& window) {
  for (; window.left() > 0; window.skip(1)) {
    if (window.peek(1).front() != '\0') return false;
  }
  return true;
}

/// The whole entry that stands next, its frame included; empty if there is none.
std::string_view nextEntry(Window& window) {
  if (window.left() < frameSize) return {};
  const std::string_view head = window.peek(headSize);
  const std::size_t length = numberAt(head, 0);
  const auto type = static_cast<unsigned char>(head[numberSize]);
  const bool known = type >= static_cast<unsigned char>(EntryType::RunBegun) &&
                     type <= static_cast<unsigned char>(EntryType::MayBeKept);
  if (!known || window.left() - frameSize < length) return {};
  const std::string_view entry = window.peek(frameSize + length);
  const std::string_view checked = entry.substr(0, headSize + length);
  return crc32c(checked) == numberAt(entry, checked.size()) ? entry : std::string_view();
}

EntryType typeOf(std::string_view entry) {
  return static_cast<EntryType>(entry[numberSize]);
}

std::string_view payloadOf(std::string_view entry) {
  return entry.substr(headSize, entry.size() - frameSize);
}

void addHead(std::string& to, EntryType type, std::size_t length) {
  if (length > std::numeric_limits<std::uint32_t>::max()) {
    throw RuntimeError(ErrorNumber::OutOfMemory);
  }
  addNumber(to, static_cast<std::uint32_t>(length));
  to += static_cast<char>(type);
}

/// Adds an entry with its frame.
void addEntry(std::string& to, EntryType type, std::string_view payload) {
  const std::size_t start = to.size();
  // Nothing behind it takes memory: half an entry must not stand before the next one.
  to.reserve(start + frameSize + payload.size());
  addHead(to, type, payload.size());
  to += payload;
  addNumber(to, crc32c(std::string_view(to).substr(start)));
}

// What was not synced yet may be lost in any order, and whole entries may follow. A mark behind
// what is no entry says that it was there once. All marks are the same bytes.
JournalEnd readEnd(Window& window) {
  std::string mark;
  addEntry(mark, EntryType::Synced, {});
  JournalEnd end{window.offset()};
  for (; window.left() > 0; window.skip(1)) {
    if (window.peek(1).front() != '\0') {
      end.torn = window.offset() + 1 - end.whole;
    } else if (window.left() >= mark.size() && window.peek(mark.size()) == mark) {
      end.damaged = true;
    }
  }
  return end;
}

}  // namespace

JournalEnd readEntries(const KeptFile& file, const TakeEntry& take) {
  Window window(file, file.length());
  const std::size_t start =
      static_cast<std::size_t>(std::min<std::uint64_t>(window.left(), signature.size()));
  if (window.peek(start) != signature.substr(0, start)) {
    // Room that a program had made when it was killed; any other content is somebody else's.
    if (isOnlyRoom(window)) return {};
    throw RuntimeError(ErrorNumber::InvalidFileFormat);
  }
  if (start < signature.size()) return {0, start, false};
  window.skip(start);
  for (std::string_view entry = nextEntry(window); !entry.empty(); entry = nextEntry(window)) {
    const std::size_t size = entry.size();
    if (typeOf(entry) != EntryType::Synced) take(typeOf(entry), payloadOf(entry));
    window.skip(size);
  }
  return readEnd(window);
}

JournalFile::JournalFile(std::unique_ptr<KeptFile> file, const JournalEnd& end)
    : file_(std::move(file)), length_(end.whole) {
  if (file_->length() > length_) file_->truncate(length_);
  if (length_ > 0) return;
  file_->append(signature);
  file_->sync();
  length_ = signature.size();
}

void JournalFile::add(EntryType type, std::string_view payload) {
  addEntry(pending_, type, payload);
}

void JournalFile::write(EntryType type, std::string_view payload) {
  const std::size_t before = pending_.size();
  add(type, payload);
  try {
    append({});
  } catch (const RuntimeError&) {
    pending_.resize(before);
    throw;
  }
}

void JournalFile::writeLong(EntryType type, std::span<const std::string_view> payload) {
  std::size_t length = 0;
  for (const std::string_view piece : payload) length += piece.size();
  std::string head;
  addHead(head, type, length);
  std::uint32_t checksum = crc32c(head);
  for (const std::string_view piece : payload) checksum = crc32c(piece, checksum);
  std::string tail;
  addNumber(tail, checksum);
  std::vector<std::string_view> bytes{head};
  bytes.insert(bytes.end(), payload.begin(), payload.end());
  bytes.push_back(tail);
  append(bytes);
}

void JournalFile::append(std::span<const std::string_view> bytes) {
  if (isBroken_) throw RuntimeError(ErrorNumber::DeviceIo);
  std::uint64_t length = length_ + pending_.size();
  try {
    file_->append(pending_);
    for (const std::string_view piece : bytes) {
      file_->append(piece);
      length += piece.size();
    }
  } catch (const RuntimeError&) {
    // What cannot be undone either is recognised as torn when the file is read again.
    isBroken_ = !trapErrors([&] { file_->truncate(length_); }, [](const RuntimeError&) {});
    throw;
  }
  length_ = length;
  pending_.clear();
}

// A mark that cannot be written is missed only when the file is damaged, too.
void JournalFile::sync() {
  if (isBroken_) throw RuntimeError(ErrorNumber::DeviceIo);
  isBroken_ = true;  // a sync that failed may pass when it is asked again, with nothing on the disk
  file_->sync();
  isBroken_ = false;
  trapErrors([&] { write(EntryType::Synced, {}); }, [](const RuntimeError&) {});
}

}  // namespace velk
