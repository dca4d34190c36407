#include "platform/spreadsheet/zipped/zip_archive.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

#include "platform/spreadsheet/little_endian.h"

namespace velk {

namespace {

// The records of an archive, by how each begins, and the lengths of their fixed parts.
constexpr std::string_view endMark = "PK\x05\x06";
constexpr std::size_t endLength = 22;
constexpr std::string_view entryMark = "PK\x01\x02";
constexpr std::size_t entryLength = 46;
constexpr std::string_view localMark = "PK\x03\x04";
constexpr std::size_t localLength = 30;
/// A comment of that length may stand behind the last record.
constexpr std::size_t longestComment = 0xFFFF;

constexpr unsigned isEncrypted = 1;
constexpr unsigned stored = 0;
constexpr unsigned deflated = 8;

template <std::unsigned_integral Number>
Number numberAt(std::string_view record, std::size_t at) {
  if (at + sizeof(Number) > record.size()) damaged("a part of its archive is cut off");
  return loadNumber<Number>(record.data() + at);
}

std::string_view piece(std::string_view file, std::size_t at, std::size_t length) {
  if (at > file.size() || length > file.size() - at) damaged("a part of its archive is cut off");
  return file.substr(at, length);
}

std::string_view endRecord(std::string_view file) {
  const std::size_t most = endLength + longestComment;
  const std::size_t from = file.size() > most ? file.size() - most : 0;
  const std::size_t at = file.rfind(endMark);
  if (at == std::string_view::npos || at < from) damaged("the end of its archive is missing");
  return piece(file, at, endLength);
}

/// zlib's state, ended with its owner.
struct EndInflation {
  void operator()(z_stream* stream) const { ::inflateEnd(stream); }
};

void inflatePieces(std::string_view bytes, const std::function<void(std::string_view)>& take) {
  z_stream stream{};
  constexpr int withoutHeader = -MAX_WBITS;
  if (::inflateInit2(&stream, withoutHeader) != Z_OK) throw std::bad_alloc();
  const std::unique_ptr<z_stream, EndInflation> ending(&stream);
  std::array<unsigned char, 1U << 16U> room{};
  // The library takes its input as bytes that it could change, and does not.
  stream.next_in = reinterpret_cast<unsigned char*>(const_cast<char*>(bytes.data()));
  stream.avail_in = static_cast<uInt>(bytes.size());
  int result = Z_OK;
  while (result == Z_OK) {
    stream.next_out = room.data();
    stream.avail_out = static_cast<uInt>(room.size());
    result = ::inflate(&stream, Z_NO_FLUSH);
    take({reinterpret_cast<const char*>(room.data()), room.size() - stream.avail_out});
  }
  if (result != Z_STREAM_END) damaged("a part of its archive cannot be unpacked");
}

}  // namespace

ZipArchive::ZipArchive(std::string_view file) : file_(file) {
  const std::string_view end = endRecord(file);
  const auto count = numberAt<std::uint16_t>(end, 10);
  std::size_t at = numberAt<std::uint32_t>(end, 16);
  for (std::size_t i = 0; i < count; ++i) {
    const std::string_view entry = piece(file, at, entryLength);
    if (!entry.starts_with(entryMark)) damaged("the list of its parts is none");
    const std::size_t name = numberAt<std::uint16_t>(entry, 28);
    const std::size_t rest =
        std::size_t{numberAt<std::uint16_t>(entry, 30)} + numberAt<std::uint16_t>(entry, 32);
    addPart(entry, piece(file, at + entryLength, name));
    at += entryLength + name + rest;
  }
}

void ZipArchive::addPart(std::string_view entry, std::string_view name) {
  if ((numberAt<std::uint16_t>(entry, 8) & isEncrypted) != 0) {
    refuse("The workbook is protected with a password; save it without one");
  }
  const auto method = numberAt<std::uint16_t>(entry, 10);
  const std::size_t length = numberAt<std::uint32_t>(entry, 20);
  const std::size_t local = numberAt<std::uint32_t>(entry, 42);
  const std::string_view before = piece(file_, local, localLength);
  const bool isKnown = method == stored || method == deflated;
  if (!before.starts_with(localMark) || !isKnown) damaged("a part is not where its archive says");
  const std::size_t start = local + localLength + numberAt<std::uint16_t>(before, 26) +
                            numberAt<std::uint16_t>(before, 28);
  const Part part{piece(file_, start, length), method == deflated,
                  numberAt<std::uint32_t>(entry, 24), numberAt<std::uint32_t>(entry, 16)};
  // Programs would not agree on which of the two counts.
  if (!parts_.try_emplace(std::string(name), part).second) damaged("it has a part twice");
}

const ZipArchive::Part& ZipArchive::part(std::string_view name) const {
  const auto found = parts_.find(name);
  if (found == parts_.end()) damaged("a part is missing");
  return found->second;
}

// A bomb is longer than it says, or is stopped by its owner's limits.
void ZipArchive::read(std::string_view name,
                      const std::function<void(std::string_view)>& take) const {
  const Part& wanted = part(name);
  uLong checksum = ::crc32(0, nullptr, 0);
  std::size_t length = 0;
  const auto check = [&](std::string_view bytes) {
    length += bytes.size();
    if (length > wanted.length) damaged("a part is longer than its archive says");
    checksum = ::crc32(checksum, reinterpret_cast<const unsigned char*>(bytes.data()),
                       static_cast<uInt>(bytes.size()));
    take(bytes);
  };
  if (wanted.isDeflated) {
    inflatePieces(wanted.bytes, check);
  } else {
    check(wanted.bytes);
  }
  if (length != wanted.length || checksum != wanted.checksum) {
    damaged("a part is not what its archive says");
  }
}

std::size_t ZipArchive::storedSize(const std::function<bool(std::string_view)>& isWanted) const {
  std::size_t size = 0;
  for (const auto& [name, part] : parts_) size += isWanted(name) ? part.bytes.size() : 0;
  return size;
}

std::string ZipArchive::beginningOf(std::string_view name, std::size_t most) const {
  std::string text;
  read(name, [&](std::string_view bytes) { text += bytes.substr(0, most - text.size()); });
  return text;
}

}  // namespace velk
