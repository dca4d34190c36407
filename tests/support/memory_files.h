// Files in memory, any call of which can be made to fail.
#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "base/errors.h"
#include "platform/files.h"

namespace velk {

class MemoryFiles final : public FileSystem {
 public:
  enum class Call {
    None,
    OpenInput,
    Read,
    OpenAppend,
    OpenReplacement,
    OpenExclusively,
    Write,
    Close
  };

  std::map<std::string, std::string, std::less<>> contents;
  Call failing = Call::None;
  ErrorNumber error = ErrorNumber::DeviceIo;
  std::optional<std::uint64_t> claimedLength;  ///< instead of the true one
  int open = 0;
  std::function<void()> onRead;  ///< runs before each reading

  std::unique_ptr<InputFile> openInput(std::string_view path) override {
    check(Call::OpenInput);
    const auto found = contents.find(path);
    if (found == contents.end()) throw RuntimeError(ErrorNumber::FileNotFound);
    return std::make_unique<Input>(*this, found->second);
  }
  std::unique_ptr<OutputFile> openAppend(std::string_view path) override {
    check(Call::OpenAppend);
    return std::make_unique<Output>(*this, contents[std::string(path)]);
  }
  std::unique_ptr<OutputFile> openReplacement(std::string_view path) override {
    check(Call::OpenReplacement);
    return std::make_unique<Replacement>(*this, std::string(path));
  }
  bool openExclusively(std::string_view path) override {
    check(Call::OpenExclusively);
    return contents.try_emplace(std::string(path)).second;
  }
  void remove(std::string_view path) override {
    if (contents.erase(std::string(path)) == 0) throw RuntimeError(ErrorNumber::FileNotFound);
  }

 private:
  struct Input final : InputFile {
    Input(MemoryFiles& f, std::string text) : files(f), bytes(std::move(text)) { ++files.open; }
    ~Input() override { --files.open; }
    std::uint64_t length() const override { return files.claimedLength.value_or(bytes.size()); }
    std::size_t read(char* to, std::size_t count) override {
      files.check(Call::Read);
      if (files.onRead) files.onRead();
      const std::size_t n = std::min(count, bytes.size() - at);
      std::copy_n(bytes.data() + at, n, to);
      at += n;
      return n;
    }
    void seek(std::uint64_t offset) override { at = static_cast<std::size_t>(offset); }
    MemoryFiles& files;
    std::string bytes;
    std::size_t at = 0;
  };

  struct Output : OutputFile {
    Output(MemoryFiles& f, std::string& text) : files(f), bytes(text) { ++files.open; }
    ~Output() override { --files.open; }
    void write(std::string_view text) override {
      files.check(Call::Write);
      bytes += text;
    }
    void close() override { files.check(Call::Close); }
    MemoryFiles& files;
    std::string& bytes;
  };

  struct Replacement final : Output {
    Replacement(MemoryFiles& f, std::string p) : Output(f, own), path(std::move(p)) {}
    void close() override {
      Output::close();
      files.contents[path] = own;
    }
    std::string own;
    std::string path;
  };

  void check(Call call) const {
    if (call == failing) throw RuntimeError(error);
  }
};

}  // namespace velk
