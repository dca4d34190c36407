#include "apps/opnimp/cli/line_colors.h"

#include <algorithm>

namespace velk {

namespace {

// As terminals take them, by ECMA-48.
constexpr std::string_view bold = "\x1B[1m";
constexpr std::string_view red = "\x1B[1;31m";
constexpr std::string_view yellow = "\x1B[33m";
constexpr std::string_view green = "\x1B[32m";
constexpr std::string_view endOfColor = "\x1B[0m";

struct LineSort {
  std::string_view beginning;
  std::string_view color;
};

constexpr LineSort lineSorts[] = {{"opnimp: ", red},
                                  {"Refused: ", red},
                                  {"An import would be refused: ", red},
                                  {"The run broke off: ", red},
                                  {"The error log could not take ", red},
                                  {"Rejects:   ", red},
                                  {"    HARMFUL: ", red},
                                  {"Passed over: ", yellow},
                                  {"Columns not used: ", yellow},
                                  {"  line ", yellow},
                                  {"  row ", yellow},
                                  {"Next:", green},
                                  {"== ", bold},
                                  {"Account", bold},
                                  {"Assumed", bold},
                                  {"Logged for the run as a whole", bold},
                                  {"Mapping", bold},
                                  {"Records that need attention", bold},
                                  {"Warnings", bold}};

std::string_view colorOf(std::string_view beginning) {
  const auto* const sort = std::ranges::find_if(
      lineSorts, [&](const LineSort& each) { return beginning.starts_with(each.beginning); });
  return sort == std::end(lineSorts) ? std::string_view() : sort->color;
}

}  // namespace

bool wantsColors(const char* terminal, const char* noColor) {
  const bool isRefused = noColor != nullptr && *noColor != '\0';
  return !isRefused && terminal != nullptr && terminal != std::string_view("dumb");
}

LineColors::LineColors(std::ostream& stream) : stream_(stream), target_(stream.rdbuf(this)) {}

LineColors::~LineColors() {
  LineColors::sync();
  stream_.rdbuf(target_);
}

bool LineColors::put(std::string_view text) {
  const auto size = static_cast<std::streamsize>(text.size());
  return target_->sputn(text.data(), size) == size;
}

bool LineColors::begin() {
  const std::string_view beginning(beginning_.data(), count_);
  const std::string_view color = colorOf(beginning);
  isBegun_ = true;
  isColored_ = !color.empty();
  count_ = 0;
  return put(color) && put(beginning);
}

bool LineColors::end(char c) {
  const bool passed = (isBegun_ || begin()) && (!isColored_ || put(endOfColor)) && put({&c, 1});
  isBegun_ = isColored_ = false;
  return passed;
}

bool LineColors::take(char c) {
  if (c == '\n' || c == '\r') return end(c);
  if (isBegun_) return put({&c, 1});
  beginning_[count_++] = c;
  return count_ < beginning_.size() || begin();
}

LineColors::int_type LineColors::overflow(int_type character) {
  if (traits_type::eq_int_type(character, traits_type::eof())) {
    return traits_type::not_eof(character);
  }
  return take(traits_type::to_char_type(character)) ? character : traits_type::eof();
}

// What was flushed has to be seen, whether or not its line goes on.
int LineColors::sync() {
  const bool passed = count_ == 0 || begin();
  return passed ? target_->pubsync() : -1;
}

}  // namespace velk
