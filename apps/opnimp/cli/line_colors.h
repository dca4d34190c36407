// Colours of what people read at a terminal: told by how a line begins, so that the reports know
// nothing of them.
#pragma once

#include <array>
#include <cstddef>
#include <ostream>
#include <streambuf>
#include <string_view>

namespace velk {

/// Whether a terminal of that name is to be sent colours, by https://no-color.org; null: not set.
bool wantsColors(const char* terminal, const char* noColor);

/// As long as it lives, lines of a stream have the colour of their sort. It takes no memory.
class LineColors : public std::streambuf {
 public:
  explicit LineColors(std::ostream& stream);
  LineColors(const LineColors&) = delete;
  LineColors& operator=(const LineColors&) = delete;
  ~LineColors() override;

 protected:
  int_type overflow(int_type character) override;
  int sync() override;

 private:
  /// Passes a line's beginning on, in its colour if it has one.
  bool begin();
  bool end(char c);
  bool take(char c);
  bool put(std::string_view text);

  static constexpr std::size_t longestBeginning = 40;

  std::ostream& stream_;
  std::streambuf* target_;
  std::array<char, longestBeginning> beginning_{};  // of a line of which more may come
  std::size_t count_ = 0;                           // of the characters in it
  bool isBegun_ = false;
  bool isColored_ = false;
};

}  // namespace velk
