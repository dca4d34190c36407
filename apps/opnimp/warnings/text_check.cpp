#include "apps/opnimp/warnings/text_check.h"

#include <algorithm>

#include "base/text.h"

namespace velk {

namespace {

/// A quoted field as programs write it: up to its closing quote, doubled ones being one. One that
/// goes on behind that quote is no such field, and means what stands there.
std::string meant(const std::string& written) {
  if (!written.starts_with('"')) return written;
  std::string text;
  for (std::size_t at = 1; at < written.size(); ++at) {
    const bool doubled = written.compare(at, 2, "\"\"") == 0;
    if (written[at] == '"' && !doubled) return at + 1 == written.size() ? text : written;
    text += written[at];
    at += doubled ? 1 : 0;
  }
  return written;
}

}  // namespace

// Master data is trimmed and loses its quotes once more when it is imported.
std::string postedText(const CheckedRecord& record, std::size_t field) {
  std::string text = record.read(field);
  if (record.file.kind.opening != nullptr) return text;
  return std::string(trim(withoutQuotes(std::string(trim(text)))));
}

void checkText(const CheckedRecord& record, std::size_t field, std::vector<Warning>& warnings) {
  const std::string written = record.written(field);
  const std::string read = postedText(record, field);
  if (record.file.isUtf8 && !isAscii(written)) {
    const std::string text = CodePage::windows1252().encode(meant(written));
    return addWarning(warnings, WarningId::Utf8,
                      record.misreading(field, text, "\"" + read + "\""));
  }
  std::string text = meant(written);
  // Blanks around master data mean nothing.
  if (record.file.kind.opening == nullptr) text = std::string(trim(text));
  if (text == read) return;
  std::string withoutCommas = text;
  std::erase(withoutCommas, ',');
  const bool commas = trim(withoutCommas) == trim(read);
  addWarning(warnings, commas ? WarningId::QuotedCommas : WarningId::LeadingQuote,
             record.misreading(field, std::move(text), quotedOrNothing(read)));
}

}  // namespace velk
