// A fresh copy of the company's database for one import, so that every run finds the same one.
#pragma once

#include <filesystem>
#include <string>
#include <system_error>

namespace velk::bench {

class CompanyCopy {
 public:
  /// Copies the database into the folder.
  CompanyCopy(const std::string& company, const std::string& folder)
      : path_(folder + "/import.db") {
    removeAll();
    std::filesystem::copy_file(company, path_);
  }
  CompanyCopy(const CompanyCopy&) = delete;
  CompanyCopy& operator=(const CompanyCopy&) = delete;
  ~CompanyCopy() { removeAll(); }

  const std::string& path() const { return path_; }

 private:
  void removeAll() {
    for (const char* suffix : {"", "-wal", "-shm"}) {
      std::error_code ignored;
      std::filesystem::remove(path_ + suffix, ignored);
    }
  }

  std::string path_;
};

}  // namespace velk::bench
