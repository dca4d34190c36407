#include "apps/opnimp/report/html_picture.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "apps/opnimp/report/html_text.h"
#include "base/numbers.h"

namespace velk {

namespace {

// In the order of Tone.
constexpr std::array<std::string_view, 6> classes{"good",    "noted",    "skipped",
                                                  "refused", "doubtful", "untouched"};

// On paper without colours, too, what needs attention must stand out from what was posted.
constexpr std::string_view patterns =
    R"x(<defs><pattern id="refused" width="6" height="6" patternUnits="userSpaceOnUse" )x"
    R"x(patternTransform="rotate(45)"><path class="stroke" d="M0 0V6"/></pattern>)x"
    R"x(<pattern id="doubtful" width="6" height="6" patternUnits="userSpaceOnUse">)x"
    R"x(<path class="stroke" d="M0 0H6M0 0V6"/></pattern></defs>)x";

std::string percent(double share) {
  std::array<char, 16> text;
  std::snprintf(text.data(), text.size(), "%.3f%%", share * 100);
  return text.data();
}

/// A rectangle of a tone, from `start` on, both being parts of the whole width.
std::string rectangle(Tone tone, double start, double width) {
  const std::string place =
      "x=\"" + percent(start) + "\" width=\"" + percent(width) + R"(" height="100%")";
  const std::string name(toneClass(tone));
  std::string text = "<rect class=\"" + name + "\" " + place + "/>";
  if (tone == Tone::Refused || tone == Tone::Doubtful) {
    text += "<rect fill=\"url(#" + name + ")\" " + place + "/>";
  }
  return text;
}

double widthOf(const Slice& slice, std::size_t records) {
  constexpr double least = 0.008;  // of the bar; a pixel or two on a phone
  return std::max(static_cast<double>(slice.count) / static_cast<double>(records), least);
}

}  // namespace

std::string_view toneClass(Tone tone) {
  return classes[static_cast<std::size_t>(tone)];
}

std::string outcomePicture(const std::vector<Slice>& slices) {
  std::size_t records = 0;
  std::string label;
  for (const Slice& slice : slices) {
    records += slice.count;
    label.append(label.empty() ? "" : ", ")
        .append(grouped(slice.count))
        .append(" ")
        .append(slice.name);
  }
  if (records == 0) return {};
  double whole = 0;  // more than 1 when small slices are widened
  for (const Slice& slice : slices) whole += widthOf(slice, records);
  std::string text = R"(<svg class="picture" role="img" aria-label=")" + html(label) + "\">";
  text += patterns;
  double start = 0;
  for (const Slice& slice : slices) {
    const double width = widthOf(slice, records) / whole;
    text += rectangle(slice.tone, start, width);
    start += width;
    if (start < 1 - 1e-9) {
      const std::string x = percent(start);
      text.append(R"(<line class="stroke" x1=")").append(x).append(R"(" x2=")").append(x);
      text += R"(" y2="100%"/>)";
    }
  }
  return text + "</svg>\n";
}

std::string pictureKey(Tone tone) {
  return R"(<svg class="key" aria-hidden="true">)" + rectangle(tone, 0, 1) + "</svg>";
}

}  // namespace velk
