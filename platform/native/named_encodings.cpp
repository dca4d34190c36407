#include "platform/native/named_encodings.h"

#include <unicode/ucnv.h>
#include <unicode/utf16.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <optional>

#include "base/text.h"

namespace velk {

namespace {

struct Closes {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using OpenConverter = std::unique_ptr<UConverter, Closes>;

OpenConverter open(const char* name) {
  UErrorCode error = U_ZERO_ERROR;
  OpenConverter converter(ucnv_open(name, &error));
  if (error == U_MEMORY_ALLOCATION_ERROR) throw std::bad_alloc();
  return U_SUCCESS(error) ? std::move(converter) : nullptr;
}

}  // namespace

bool knowsEncoding(const std::string& name) {
  // The library takes an empty name for the machine's own encoding, and a comma for an option.
  return !name.empty() && name.find(',') == std::string::npos && open(name.c_str()) != nullptr;
}

namespace {

/// Of an encoding in which each byte is a character, and those of ASCII are themselves.
std::optional<CodePage> pageOf(UConverter* from) {
  if (ucnv_getMaxCharSize(from) != 1) return std::nullopt;
  std::array<char16_t, 128> upper{};
  for (unsigned i = 0; i < 256; ++i) {
    const char byte = static_cast<char>(i);
    std::array<UChar, 4> units{};
    UErrorCode error = U_ZERO_ERROR;
    const auto length = ucnv_toUChars(from, units.data(), static_cast<std::int32_t>(units.size()),
                                      &byte, 1, &error);
    const bool isOne = U_SUCCESS(error) && length == 1 && !U16_IS_SURROGATE(units[0]);
    if (!isOne || (i < 0x80 && units[0] != i)) return std::nullopt;
    if (i >= 0x80) upper[i - 0x80] = units[0];
  }
  return CodePage(upper);
}

// In blocks, so that a long text takes no memory beside the result.
std::string decodeAny(UConverter* from, std::string_view bytes) {
  const OpenConverter to = open("UTF-8");
  std::string text;
  text.reserve(bytes.size());
  constexpr std::size_t blockSize = std::size_t{1} << 15;
  const auto block = std::make_unique<std::array<char, blockSize>>();
  const auto pivot = std::make_unique<std::array<UChar, blockSize>>();
  const char* source = bytes.data();
  UChar* pivotFrom = pivot->data();
  UChar* pivotTo = pivot->data();
  for (UErrorCode error = U_BUFFER_OVERFLOW_ERROR; error == U_BUFFER_OVERFLOW_ERROR;) {
    error = U_ZERO_ERROR;
    char* target = block->data();
    ucnv_convertEx(to.get(), from, &target, block->data() + block->size(), &source,
                   bytes.data() + bytes.size(), pivot->data(), &pivotFrom, &pivotTo,
                   pivot->data() + pivot->size(), static_cast<UBool>(false),
                   static_cast<UBool>(true), &error);
    text.append(block->data(), target);
  }
  return text;
}

}  // namespace

std::string decodeNamed(const std::string& name, std::string_view bytes) {
  const OpenConverter from = open(name.c_str());
  const std::optional<CodePage> page = pageOf(from.get());
  return page ? page->decode(bytes) : decodeAny(from.get(), bytes);
}

}  // namespace velk
