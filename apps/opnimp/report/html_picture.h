// The picture of a run's outcomes in a page: one bar, a slice for each.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "apps/opnimp/report/html_report.h"

namespace velk {

/// The style's class of a tone.
std::string_view toneClass(HtmlReport::Tone tone);
/// The bar; empty where there are no records. Even a single record of many thousands can be seen.
std::string outcomePicture(const std::vector<HtmlReport::Share>& outcomes);
/// A square that looks as the slices of a tone do.
std::string pictureKey(HtmlReport::Tone tone);

}  // namespace velk
