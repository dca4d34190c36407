#include "apps/opnimp/convert/named_encodings.h"

#include <unicode/ucnv.h>
#include <unicode/ucsdet.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>

namespace velk {

namespace {

struct Closes {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
  void operator()(UCharsetDetector* detector) const { ucsdet_close(detector); }
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

// In blocks, so that a long text takes no memory beside the result.
std::string decodeNamed(const std::string& name, std::string_view bytes) {
  const OpenConverter from = open(name.c_str());
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
    ucnv_convertEx(to.get(), from.get(), &target, block->data() + block->size(), &source,
                   bytes.data() + bytes.size(), pivot->data(), &pivotFrom, &pivotTo,
                   pivot->data() + pivot->size(), static_cast<UBool>(false),
                   static_cast<UBool>(true), &error);
    text.append(block->data(), target);
  }
  return text;
}

std::string likelyEncoding(std::string_view bytes) {
  constexpr std::size_t enough = std::size_t{1} << 16;
  constexpr std::int32_t sure = 40;  // of 100
  const std::string_view sample = bytes.substr(0, std::min(bytes.size(), enough));
  UErrorCode error = U_ZERO_ERROR;
  const std::unique_ptr<UCharsetDetector, Closes> detector(ucsdet_open(&error));
  ucsdet_setText(detector.get(), sample.data(), static_cast<std::int32_t>(sample.size()), &error);
  const UCharsetMatch* const match = ucsdet_detect(detector.get(), &error);
  if (U_FAILURE(error) || match == nullptr) return {};
  if (ucsdet_getConfidence(match, &error) < sure) return {};
  const char* const name = ucsdet_getName(match, &error);
  return U_SUCCESS(error) && name != nullptr ? name : "";
}

}  // namespace velk
