#include "platform/spreadsheet/zipped/iso_date.h"

#include <array>

#include "base/dates.h"
#include "base/numbers.h"

namespace velk {

namespace {

/// Three numbers with a sign between them.
std::optional<std::array<int, 3>> threeNumbers(std::string_view text, char between) {
  std::array<int, 3> numbers{};
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const std::size_t end = i + 1 < numbers.size() ? text.find(between) : text.size();
    const auto number = exactNumber<int>(text.substr(0, end));
    if (end == std::string_view::npos || !number || *number < 0) return std::nullopt;
    numbers[i] = *number;
    text.remove_prefix(end < text.size() ? end + 1 : end);
  }
  return numbers;
}

}  // namespace

std::optional<double> isoDays(std::string_view text) {
  const std::size_t end = text.find('T');
  const auto day = threeNumbers(text.substr(0, end), '-');
  if (!day) return std::nullopt;
  const CivilDate civil{(*day)[0], (*day)[1], (*day)[2]};
  double time = 0;
  if (end != std::string_view::npos) {
    const std::string_view clock = text.substr(end + 1);
    const auto parts = threeNumbers(clock.substr(0, clock.find_first_of(".Z")), ':');
    if (!parts || (*parts)[0] > 23 || (*parts)[1] > 59 || (*parts)[2] > 59) return std::nullopt;
    time = ((*parts)[0] * 60 + (*parts)[1]) * 60 + (*parts)[2];
  }
  if (!isCivil(civil)) return std::nullopt;
  return dateFromCivil(civil, time / secondsPerDay).days;
}

}  // namespace velk
