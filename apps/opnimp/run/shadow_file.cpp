#include "apps/opnimp/run/shadow_file.h"

#include <algorithm>

namespace velk {

namespace {

class ShadowInput final : public InputFile {
 public:
  explicit ShadowInput(std::string_view contents) : contents_(contents) {}

  std::uint64_t length() const override { return contents_.size(); }
  std::size_t read(char* to, std::size_t count) override {
    const std::size_t read = contents_.copy(to, count, at_);
    at_ += read;
    return read;
  }
  void seek(std::uint64_t offset) override { at_ = static_cast<std::size_t>(offset); }

 private:
  std::string_view contents_;
  std::size_t at_ = 0;
};

class ShadowOutput final : public OutputFile {
 public:
  explicit ShadowOutput(std::string& contents) : contents_(contents) {}

  void write(std::string_view bytes) override { contents_ += bytes; }
  void close() override {}

 private:
  std::string& contents_;
};

}  // namespace

std::unique_ptr<InputFile> ShadowFile::openInput(std::string_view path) {
  if (path != path_) return files_.openInput(path);
  return std::make_unique<ShadowInput>(written_ ? *written_ : contents_);
}

std::unique_ptr<OutputFile> ShadowFile::openReplacement(std::string_view path) {
  if (path != path_) return files_.openReplacement(path);
  return std::make_unique<ShadowOutput>(written_.emplace());
}

}  // namespace velk
