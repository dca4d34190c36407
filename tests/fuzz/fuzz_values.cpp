// What reads a single text on any bytes: dates, numbers, number formats, statements, connection
// strings.
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "apps/opnimp/run/database_choice.h"
#include "base/date_reader.h"
#include "base/errors.h"
#include "base/numbers.h"
#include "platform/odbc/procedure_step.h"
#include "platform/odbc/statement_shape.h"
#include "platform/spreadsheet/number_format.h"

using namespace velk;

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

void readNumbers(std::string_view text) {
  try {
    const double leading = leadingNumber(text);
    const auto whole = parseNumber(text);
    require(!whole || *whole == leading);
  } catch (const RuntimeError& error) {
    require(error.is(ErrorNumber::Overflow));
  }
}

/// The last eight bytes are a number, those before them its format.
void formatNumber(std::string_view bytes) {
  if (bytes.size() < sizeof(double)) return;
  double number = 0;
  std::memcpy(&number, bytes.data() + bytes.size() - sizeof number, sizeof number);
  bytes.remove_suffix(sizeof number);
  const NumberFormat format(bytes);
  for (const double value : {number, 0.0, 39538.75, -1234.5}) {
    for (const bool from1904 : {false, true}) static_cast<void>(format.text(value, from1904));
  }
}

/// With its literals back in their places a statement is what it was.
void takeApart(std::string_view statement) {
  const auto shape = shapeOf(statement);
  if (!shape) return;
  std::string whole;
  std::size_t next = 0;
  for (const char byte : shape->text) {
    if (byte != '?') {
      whole += byte;
      continue;
    }
    whole += '\'';
    for (const char quoted : shape->literals.at(next++))
      whole.append(quoted == '\'' ? 2 : 1, quoted);
    whole += '\'';
  }
  require(next == shape->literals.size());
  require(whole == statement);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  static_cast<void>(readDate(text, 2008));
  readNumbers(text);
  formatNumber(text);
  static_cast<void>(faultOfStep(text));
  takeApart(text);
  // A regular expression takes stack for each character, which sanitizers make many times larger.
  if (size <= 512) {
    const std::string masked = maskPasswords("PWD=hunter2;" + std::string(text));
    require(masked.find("hunter2") == std::string::npos);
  }
  return 0;
}
