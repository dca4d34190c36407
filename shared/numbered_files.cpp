#include "shared/numbered_files.h"

#include <algorithm>
#include <utility>

#include "base/errors.h"

namespace velk {

bool NumberedFiles::isOpen(std::int16_t number) const {
  return inputs_.contains(number) || outputs_.contains(number);
}

std::int16_t NumberedFiles::freeFile(Use use) const {
  const std::int16_t last = use == Use::ErrorLog ? lastNumber : lastNumber - 1;
  for (std::int16_t number = 1; number <= last; ++number) {
    if (!isOpen(number)) return number;
  }
  throw RuntimeError(ErrorNumber::TooManyFiles);
}

void NumberedFiles::checkFree(std::int16_t number) const {
  if (number < 1 || number > lastNumber) throw RuntimeError(ErrorNumber::BadFileNameOrNumber);
  if (isOpen(number)) throw RuntimeError(ErrorNumber::FileAlreadyOpen);
}

void NumberedFiles::openForInput(std::int16_t number, std::string_view path) {
  checkFree(number);
  Input input;
  input.file = files_.openInput(path);
  // Not set to zero: only what fill() has written is ever read.
  input.buffer = std::make_unique_for_overwrite<std::array<char, bufferSize>>();
  inputs_.emplace(number, std::move(input));
}

void NumberedFiles::openForAppend(std::int16_t number, std::string_view path) {
  checkFree(number);
  outputs_.emplace(number, files_.openAppend(path));
}

void NumberedFiles::close(std::int16_t number) {
  inputs_.erase(number);
  // Taken out first: the number is free even if closing fails.
  const auto output = outputs_.extract(number);
  if (!output.empty()) output.mapped()->close();
}

NumberedFiles::Input& NumberedFiles::input(std::int16_t number) {
  const auto found = inputs_.find(number);
  if (found == inputs_.end()) throw RuntimeError(ErrorNumber::BadFileNameOrNumber);
  return found->second;
}

// False at the end of the file.
bool NumberedFiles::fill(Input& input) {
  if (input.next < input.end) return true;
  input.next = 0;
  input.end = input.file->read(input.buffer->data(), bufferSize);
  return input.end > 0;
}

bool NumberedFiles::atEnd(std::int16_t number) {
  return !fill(input(number));
}

std::string NumberedFiles::lineInput(std::int16_t number) {
  Input& in = input(number);
  if (!fill(in)) throw RuntimeError(ErrorNumber::InputPastEnd);
  std::string bytes;
  // The end of the file ends the last line, too.
  while (fill(in)) {
    const char* const from = in.buffer->data() + in.next;
    const char* const to = in.buffer->data() + in.end;
    const char* const stop = std::find(from, to, '\r');
    if (bytes.size() + static_cast<std::size_t>(stop - from) > maxTextLength) {
      throw RuntimeError(ErrorNumber::OutOfMemory);
    }
    bytes.append(from, stop);
    in.next += static_cast<std::size_t>(stop - from);
    if (stop == to) continue;
    // The line feed may be the first byte of the next filling.
    ++in.next;
    if (fill(in) && (*in.buffer)[in.next] == '\n') ++in.next;
    break;
  }
  return codePage_.decode(bytes);
}

void NumberedFiles::rewind(std::int16_t number) {
  Input& in = input(number);
  in.file->seek(0);
  // The bytes in the buffer come from another place of the file.
  in.next = in.end = 0;
}

std::string NumberedFiles::readAll(std::int16_t number) {
  // lineInput() may have taken a part already.
  rewind(number);
  Input& in = input(number);
  if (in.file->length() > maxTextLength) throw RuntimeError(ErrorNumber::OutOfMemory);
  return refusingWithoutMemory([&] { return readText(in); });
}

// By way of the buffer, which stays in the processor's cache between reading, looking and copying.
std::string NumberedFiles::readText(Input& input) const {
  std::string text;
  auto left = static_cast<std::size_t>(input.file->length());
  // One byte in eight may be no ASCII, and a reader may append a little, before the text has to
  // move. Memory that is never touched costs nothing.
  text.reserve(left + left / 8 + 1024);
  while (left > 0) {
    if (!fill(input)) throw RuntimeError(ErrorNumber::InputPastEnd);
    input.next = input.end;
    const std::size_t count = std::min(left, input.end);
    codePage_.appendDecoded(text, {input.buffer->data(), count});
    if (text.size() > maxTextLength) throw RuntimeError(ErrorNumber::OutOfMemory);
    left -= count;
  }
  return text;
}

// What cannot be read is taken as it is.
bool NumberedFiles::endsWithinLine(std::string_view path) const {
  char last = '\n';
  const auto look = [&] {
    const auto file = files_.openInput(path);
    if (file->length() == 0) return;
    file->seek(file->length() - 1);
    file->read(&last, 1);
  };
  trapErrors(look, [](const RuntimeError&) {});
  return last != '\n';
}

void NumberedFiles::printLine(std::int16_t number, std::string_view text) {
  const auto found = outputs_.find(number);
  if (found == outputs_.end()) throw RuntimeError(ErrorNumber::BadFileNameOrNumber);
  found->second->write(codePage_.encode(text) + "\r\n");
}

}  // namespace velk
