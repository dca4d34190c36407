#include "platform/native/native_process.h"

#include <windows.h>

#include <algorithm>
#include <array>

#include "platform/windows/handles.h"
#include "platform/windows/wide_text.h"

namespace velk {

namespace {

/// As CommandLineToArgvW takes it apart again: backslashes count double in front of a quote only.
std::wstring quoted(const std::string& word) {
  std::wstring text = L"\"";
  std::size_t backslashes = 0;
  for (const wchar_t c : toWide(word)) {
    if (c == L'"') text.append(backslashes + 1, L'\\');
    backslashes = c == L'\\' ? backslashes + 1 : 0;
    text += c;
  }
  return text.append(backslashes, L'\\') + L'"';
}

std::wstring commandLine(const std::vector<std::string>& command) {
  std::wstring line;
  for (const std::string& word : command) line += (line.empty() ? L"" : L" ") + quoted(word);
  return line;
}

/// The entries, each behind the last one's NUL, and one more at the end.
std::wstring environmentWith(const std::string& variable) {
  const std::wstring own = toWide(variable);
  const std::wstring name = own.substr(0, own.find(L'=') + 1);
  std::wstring all = own + L'\0';
  wchar_t* const entries = GetEnvironmentStringsW();
  for (const wchar_t* entry = entries; entry != nullptr && *entry != L'\0';) {
    const std::wstring_view text(entry);
    if (!text.starts_with(name)) all.append(text) += L'\0';
    entry += text.size() + 1;
  }
  FreeEnvironmentStringsW(entries);
  return all + L'\0';
}

struct Pipe {
  FileHandle reading;
  FileHandle writing;
};

Pipe makePipe() {
  SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  HANDLE reading = nullptr;
  HANDLE writing = nullptr;
  if (CreatePipe(&reading, &writing, &inherited, 0) == FALSE) return {};
  SetHandleInformation(reading, HANDLE_FLAG_INHERIT, 0);
  return {FileHandle(reading), FileHandle(writing)};
}

/// What is there by now; false at the end of the pipe.
bool takeWhatIsThere(HANDLE pipe, std::string& output) {
  DWORD there = 0;
  if (PeekNamedPipe(pipe, nullptr, 0, nullptr, &there, nullptr) == FALSE) return false;
  std::array<char, 4096> bytes{};
  while (there > 0) {
    DWORD got = 0;
    const DWORD most = std::min(there, static_cast<DWORD>(bytes.size()));
    if (ReadFile(pipe, bytes.data(), most, &got, nullptr) == FALSE || got == 0) return false;
    output.append(bytes.data(), got);
    there -= got;
  }
  return true;
}

/// Reads to the end; false if that does not come in time. Windows cannot wait for a pipe.
bool readAll(HANDLE pipe, std::string& output, std::chrono::milliseconds limit) {
  constexpr DWORD pause = 10;
  const ULONGLONG end = GetTickCount64() + static_cast<ULONGLONG>(limit.count());
  while (takeWhatIsThere(pipe, output)) {
    if (GetTickCount64() >= end) return false;
    Sleep(pause);
  }
  return true;
}

}  // namespace

std::optional<Answer> answerOf(const std::vector<std::string>& command, const std::string& variable,
                               std::chrono::milliseconds limit) {
  Pipe pipe = makePipe();
  if (!pipe.writing) return std::nullopt;
  STARTUPINFOW start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdOutput = pipe.writing.get();
  std::wstring line = commandLine(command);
  std::wstring environment = environmentWith(variable);
  PROCESS_INFORMATION started{};
  if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE,
                     CREATE_UNICODE_ENVIRONMENT | CREATE_NO_WINDOW, environment.data(), nullptr,
                     &start, &started) == FALSE) {
    return std::nullopt;
  }
  const FileHandle process(started.hProcess);
  const FileHandle thread(started.hThread);
  pipe.writing = FileHandle();
  Answer answer;
  const bool whole = readAll(pipe.reading.get(), answer.output, limit);
  if (!whole) TerminateProcess(process.get(), 1);
  WaitForSingleObject(process.get(), INFINITE);
  DWORD status = 0;
  if (!whole || GetExitCodeProcess(process.get(), &status) == FALSE) return std::nullopt;
  answer.status = static_cast<int>(status);
  return answer;
}

}  // namespace velk
