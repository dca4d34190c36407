#include "platform/native/pipe_reading.h"

#include <array>

#include "platform/windows/windows_files.h"

namespace velk {

std::string readStandardInput(std::size_t most) {
  const HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
  if (input == nullptr || input == INVALID_HANDLE_VALUE) {
    throw RuntimeError(ErrorNumber::BadFileNameOrNumber);
  }
  std::string bytes;
  std::array<char, std::size_t{1} << 16U> room{};
  for (DWORD count = 1; count != 0;) {
    const BOOL read = ReadFile(input, room.data(), atMostOneCall(room.size()), &count, nullptr);
    // So does a pipe end whose other side is closed.
    if (read == FALSE && GetLastError() == ERROR_BROKEN_PIPE) break;
    requireFileCall(read);
    bytes.append(room.data(), count);
    if (bytes.size() > most) throw RuntimeError(ErrorNumber::OutOfMemory);
  }
  return bytes;
}

}  // namespace velk
