#include "shared/Velk_ModOpnImp.h"

#include "shared/csv_text.h"

namespace velk {

Velk_ModOpnImp::Velk_ModOpnImp(const Platform& platform, ErrorLog* errorLog)
    : platform_(platform),
      files_(platform.files, platform.codePage),
      fileLog_(files_, platform.desktop),
      errorLog_(errorLog == nullptr ? &fileLog_ : errorLog) {}

void Velk_ModOpnImp::WriteErrorLog(std::string_view text) {
  try {
    errorLog_->append(text);
  } catch (const RuntimeError&) {
    // A log that can't be written must not stop the import that writes it.
  }
}

namespace {

std::string errorLine(std::string_view message, std::string_view number) {
  return std::string("(").append(number).append("): ").append(message);
}

}  // namespace

void Velk_ModOpnImp::LogError(std::string_view message, std::string_view number) {
  WriteErrorLog(errorLine(message, number));
}

std::string Velk_ModOpnImp::logTrapped(std::string_view tag, const RuntimeError& error) {
  std::string line =
      errorLine(std::string(tag).append(error.description()), std::to_string(error.number()));
  WriteErrorLog(line);
  return line;
}

// The user is told to read the log, which says which file it was; the description of the error is
// not in it, as logs never had it.
std::string Velk_ModOpnImp::ReadFileText(std::string_view path) {
  std::string text;
  const auto read = [&] {
    const std::int16_t number = files_.freeFile();
    files_.openForInput(number, path);
    try {
      text = files_.readAll(number);
    } catch (...) {
      files_.close(number);
      throw;
    }
    files_.close(number);
  };
  trapErrors(read, [&](const RuntimeError&) {
    WriteErrorLog(std::string("Error in Opening the file ").append(path));
    hostService().messageBox("Check The Error Log " + errorLogPath(), styleOk);
  });
  return text;
}

std::vector<std::string> Velk_ModOpnImp::ParseCsvLine(std::string_view line) {
  std::vector<std::string> fields;
  trap("", [&] { fields = splitLine(line, QuotedComma::Drop); });
  return fields;
}

std::string Velk_ModOpnImp::UnquoteField(std::string_view field) {
  std::string text;
  // A field of one quote is an error: it is logged, and the answer is empty.
  trap("", [&] { text = unquoted(field); });
  return text;
}

// Made when first needed: a host may register its class after it has made ours.
HostService& Velk_ModOpnImp::hostService() {
  if (hostService_ == nullptr) hostService_ = platform_.createHostService();
  return *hostService_;
}

HostMainWindow& Velk_ModOpnImp::hostMainWindow() {
  if (hostMainWindow_ == nullptr) hostMainWindow_ = hostService().mainWindow();
  return *hostMainWindow_;
}

}  // namespace velk
