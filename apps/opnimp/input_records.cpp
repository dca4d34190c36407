#include "apps/opnimp/input_records.h"

#include <algorithm>
#include <utility>

#include "platform/errors.h"
#include "platform/text.h"
#include "shared/file_text.h"

namespace velk {

namespace {

std::string unquoted(std::string field) {
  try {
    field.resize(unquoteInPlace(field.data(), field.size()));
  } catch (const RuntimeError&) {
    field.clear();
  }
  return field;
}

}  // namespace

InputRecords::InputRecords(std::string bytes) : bytes_(std::move(bytes)) {
  constexpr std::string_view lineEnd = "\r\n";
  std::size_t line = 1;
  for (std::size_t start = 0; start < bytes_.size();) {
    const std::size_t end = std::min(bytes_.find(lineEnd, start), bytes_.size());
    const RecordPlace place{start, end - start, line};
    if (start == 0) {
      header_ = place;
    } else if (place.length != 0) {
      records_.push_back(place);
    }
    const std::size_t next = std::min(end + lineEnd.size(), bytes_.size());
    line += static_cast<std::size_t>(std::count(bytes_.data() + start, bytes_.data() + next, '\n'));
    start = next;
  }
}

std::vector<std::string> InputRecords::fields(std::size_t record, QuotedComma quotedComma,
                                              std::size_t most) const {
  std::string line = CodePage::windows1252().decode(bytesOf(record));
  line.resize(markFields(line.data(), line.size(), quotedComma));
  std::vector<std::string> fields;
  for (std::size_t start = 0; fields.size() < most && start <= line.size();) {
    const std::size_t end = std::min(line.find(fieldEnd, start), line.size());
    fields.push_back(unquoted(line.substr(start, end - start)));
    start = end + 1;
  }
  return fields;
}

std::string readBytes(FileSystem& files, std::string_view path) {
  const auto file = files.openInput(path);
  if (file->length() > FileText::maxLength) throw RuntimeError(ErrorNumber::OutOfMemory);
  std::string bytes(static_cast<std::size_t>(file->length()), '\0');
  bytes.resize(file->read(bytes.data(), bytes.size()));
  return bytes;
}

}  // namespace velk
