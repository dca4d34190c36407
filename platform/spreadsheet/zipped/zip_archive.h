// The parts of a ZIP archive, which .xlsx and .ods workbooks are.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace velk {

class ZipArchive {
 public:
  /// The file has to live as long. Error 321 for one that is no archive, is damaged, has a
  /// password, or holds a name twice.
  explicit ZipArchive(std::string_view file);

  bool has(std::string_view name) const { return parts_.contains(name); }
  /// Of all parts with such names, in bytes of the archive.
  std::size_t storedSize(const std::function<bool(std::string_view)>& isWanted) const;
  /// Hands over a part, piece by piece. Error 321 for one that there is not, or that is not what
  /// the archive says of its length and its checksum; pieces may have been handed over by then.
  void read(std::string_view name, const std::function<void(std::string_view)>& take) const;
  /// A short one as a whole: no more than `most` bytes of it.
  std::string beginningOf(std::string_view name, std::size_t most) const;

 private:
  struct Part {
    std::string_view bytes;  // as they are stored
    bool isDeflated;
    std::uint32_t length;
    std::uint32_t checksum;
  };

  void addPart(std::string_view entry, std::string_view name);
  const Part& part(std::string_view name) const;

  std::string_view file_;
  std::map<std::string, Part, std::less<>> parts_;
};

}  // namespace velk
