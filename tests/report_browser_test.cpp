// The report's page in a real browser, where one is installed: on a narrow and a wide screen, light
// and dark, and on paper.
#include <doctest/doctest.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "apps/opnimp/report/html_report.h"
#include "tests/support/json_value.h"
#include "tests/support/temporary_folder.h"

namespace velk {
namespace {

bool lacksBrowser() {
  const bool lacks = std::system("command -v chromium pdftotext >/dev/null 2>&1") != 0;
  if (lacks) MESSAGE("Chromium or pdftotext is not installed: skipped (scripts/setup --browser)");
  return lacks;
}

/// Each of these would show if it were taken for anything but text.
const std::string hostile = std::string("<script>document.title='ran'</script><img src=x>\"'&lt;") +
                            '\0' + "\x1B[2J" + "\u202Etxet\u2066 \xFF" + std::string(300, 'W');

HtmlReport hostileReport() {
  const Sums large{32766, 999999999999.99L, 999999999999.99L, 999999999999.99L, 999999999999.99L};
  const Sums one{1, 1e300L, 0, 1, 0};
  HtmlReport report{
      .title = hostile,
      .verdict = hostile,
      .tone = Tone::Doubtful,
      .facts = {{"File", hostile}, {hostile, "SHA-256"}},
      .hasAmounts = true,
      .outcomes = {{"posted", Tone::Good, large, true}, {hostile, Tone::Refused, one, true}},
      .effects = {{"Entries posted", {}, large, false}},
      .file = large,
      .balance = hostile,
      .differences = {hostile},
      .next = {hostile},
      .attention = {{hostile, hostile, hostile}},
      .assumed = {{hostile, hostile, hostile}},
      .parties = {},
      .mapping = {{hostile, hostile}}};
  for (int i = 0; i < 150; ++i) {
    report.parties.push_back({"party" + std::to_string(i) + "x", hostile, large, one});
  }
  return report;
}

// What the page does in two frames, as one JSON text: how far it is wider than its frame, which
// elements are wider, what was loaded or run, the lowest contrast of a text, and its texts.
constexpr std::string_view measure = R"(<!DOCTYPE html><meta charset="utf-8"><body>
<iframe src="report.html" width="390" height="700"></iframe>
<iframe src="report.html" width="1280" height="700"></iframe>
<script>
function light(color) {
  const parts = color.match(/[\d.]+/g).slice(0, 3).map(v => v / 255)
    .map(v => v <= 0.03928 ? v / 12.92 : ((v + 0.055) / 1.055) ** 2.4);
  return 0.2126 * parts[0] + 0.7152 * parts[1] + 0.0722 * parts[2] + 0.05;
}
function look(frame) {
  const page = frame.contentDocument, root = page.documentElement;
  const style = e => frame.contentWindow.getComputedStyle(e);
  const all = [...page.body.querySelectorAll('*')];
  const paper = light(style(page.body).backgroundColor);
  return {
    beyond: root.scrollWidth - root.clientWidth,
    wider: all.filter(e => e.scrollWidth > e.clientWidth + 1 && style(e).display != 'inline' ||
                           e.getBoundingClientRect().right > root.clientWidth + 1).length,
    active: page.querySelectorAll('script, img, iframe, link, [onerror], [style]').length,
    ran: page.title == 'ran',
    contrast: Math.min(...all.filter(e => e.textContent.trim()).map(e => light(style(e).color))
      .map(ink => Math.max(ink, paper) / Math.min(ink, paper))) >= 4.5,
    dark: paper < 0.2,
    title: page.querySelector('h1').textContent,
    slices: [...page.querySelectorAll('.picture > rect')]
      .filter(e => e.getBoundingClientRect().width >= 1).length,
  };
}
addEventListener('load', () => {
  const [narrow, wide] = [...document.querySelectorAll('iframe')].map(look);
  document.body.textContent = 'BEGIN' + JSON.stringify({narrow, wide}) + 'END';
});
</script></body>)";

struct Browser {
  TemporaryFolder folder;

  explicit Browser(const HtmlReport& report) {
    folder.write("report.html", htmlPage(report));
    folder.write("measure.html", measure);
  }

  /// Runs the browser for one of the files, and answers what it writes.
  std::string run(const std::string& options, const std::string& file) const {
    const std::string command =
        "timeout 60 chromium --headless --no-sandbox --disable-gpu --allow-file-access-from-files "
        "--user-data-dir='" +
        folder.path("profile") + "' " + options + " 'file://" + folder.path(file) + "' >'" +
        folder.path("out") + "' 2>/dev/null";
    REQUIRE(std::system(command.c_str()) == 0);
    return folder.read("out");
  }

  Json seen(const std::string& options) const {
    std::string dom = run("--dump-dom " + options, "measure.html");
    const std::size_t begin = dom.find("BEGIN") + 5;
    dom = dom.substr(begin, dom.find("END") - begin);
    // The browser writes its text as markup.
    for (const auto& [mark, sign] : {std::pair{"&lt;", "<"}, {"&gt;", ">"}, {"&amp;", "&"}}) {
      for (std::size_t at = 0; (at = dom.find(mark, at)) != std::string::npos; ++at) {
        dom.replace(at, std::string_view(mark).size(), sign);
      }
    }
    return Json(dom + "\n");
  }
};

TEST_CASE("the page on a narrow and a wide screen, light and dark") {
  if (lacksBrowser()) return;
  const Browser browser(hostileReport());
  for (const bool dark : {false, true}) {
    const Json seen =
        browser.seen(std::string("--blink-settings=preferredColorScheme=") + (dark ? "0" : "1"));
    for (const std::string frame : {"narrow.", "wide."}) {
      CAPTURE(dark);
      CAPTURE(frame);
      CHECK(seen.at(frame + "beyond") == "0");
      CHECK(seen.at(frame + "wider") == "0");
      CHECK(seen.at(frame + "active") == "0");
      CHECK(seen.at(frame + "ran") == "false");
      CHECK(seen.at(frame + "contrast") == "true");
      CHECK(seen.at(frame + "dark") == (dark ? "true" : "false"));
      CHECK(seen.at(frame + "slices") == "3");  // one of them is the hatching of another
      CHECK(seen.at(frame + "title") ==
            R"(<script>document.title='ran'</script><img src=x>"'&lt;\x00\x1B[2J)"
            R"(\u202Etxet\u2066 )"
            "\uFFFD" +
                std::string(300, 'W'));
    }
  }
}

TEST_CASE("the page on paper") {
  if (lacksBrowser()) return;
  const Browser browser(hostileReport());
  const auto& folder = browser.folder;
  browser.run("--no-pdf-header-footer --print-to-pdf='" + folder.path("page.pdf") + "'",
              "report.html");
  const std::string words =
      "pdftotext -bbox '" + folder.path("page.pdf") + "' '" + folder.path("words") + "'";
  REQUIRE(std::system(words.c_str()) == 0);
  const std::string text = folder.read("words");
  const auto numberBehind = [&](const char* name, std::size_t& at) {
    at = text.find(name, at);
    if (at == std::string::npos) return -1.0;
    at += std::string_view(name).size();
    return std::strtod(text.c_str() + at, nullptr);
  };
  std::size_t at = 0;
  constexpr double perMillimetre = 72 / 25.4;
  CHECK(numberBehind("<page width=\"", at) == doctest::Approx(210 * perMillimetre).epsilon(0.002));
  CHECK(numberBehind("height=\"", at) == doctest::Approx(297 * perMillimetre).epsilon(0.002));
  double left = 1000;
  double right = 0;
  for (std::size_t word = at; word != std::string::npos;) {
    if (const double x = numberBehind("xMin=\"", word); x >= 0) left = std::min(left, x);
    if (word != std::string::npos) right = std::max(right, numberBehind("xMax=\"", word));
  }
  CHECK(left > 15 * perMillimetre);
  CHECK(right < 195 * perMillimetre);
  for (int i = 0; i < 150; ++i) {
    CHECK(text.find(">party" + std::to_string(i) + "x<") != std::string::npos);
  }
  CHECK(text.find(">signature<") != std::string::npos);
}

}  // namespace
}  // namespace velk
