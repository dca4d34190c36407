#include "apps/opnimp/report/html_report.h"

#include <string_view>

#include "apps/opnimp/cli/printable.h"
#include "apps/opnimp/report/html_style.h"
#include "apps/opnimp/report/html_text.h"

namespace velk {

namespace {

// Nothing may be loaded or run, even if a text should get into the markup.
constexpr std::string_view head = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta http-equiv="Content-Security-Policy" content="default-src 'none'; style-src 'unsafe-inline'">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>)";

struct Column {
  enum class Kind { Text, Number, LongText };
  std::string_view title;
  Kind kind = Kind::Text;
};
using Columns = std::vector<Column>;
constexpr auto numeric = Column::Kind::Number;
constexpr auto longText = Column::Kind::LongText;

struct Row {
  std::vector<std::string> cells;
  std::string key{};  ///< markup before the first cell's text
  bool isSum = false;
};

std::string_view classOf(Column::Kind kind) {
  if (kind == numeric) return " class=\"number\"";
  return kind == longText ? " class=\"text\"" : "";
}

class Page {
 public:
  explicit Page(const HtmlReport& report) : report_(report) {}

  std::string write() {
    text_.append(head).append(html(report_.title)).append("</title>\n<style>");
    text_.append(htmlStyle).append("</style>\n</head>\n<body>\n<main>\n");
    writeHeader();
    writeOutcomes();
    writeNext();
    writeRemarks("What needs attention", {{"Where"}, {"Outcome"}, {"Reason", longText}},
                 report_.attention);
    writeRemarks("What was assumed", {{"Where"}, {"Assumption", longText}}, report_.assumed);
    writeParties();
    writeMapping();
    writeSignatures();
    return std::move(text_.append("</main>\n</body>\n</html>\n"));
  }

 private:
  void writeHeader() {
    text_ += "<header>\n<p class=\"kicker\">IMPORT REPORT</p>\n";
    element("h1", report_.title);
    element("p", report_.verdict, "verdict " + std::string(toneClass(report_.tone)));
    text_ += "<dl>\n";
    for (const HtmlReport::Fact& fact : report_.facts) {
      element("dt", fact.name);
      element("dd", fact.value);
    }
    text_ += "</dl>\n</header>\n";
  }

  void writeOutcomes() {
    if (report_.outcomes.empty()) return;
    element("h2", "Control totals");
    std::vector<Slice> slices;
    std::vector<Row> rows;
    for (const HtmlReport::Share& share : report_.outcomes) {
      slices.push_back({share.name, share.tone, share.sums.count});
      rows.push_back(rowOf(share, pictureKey(share.tone)));
    }
    text_ += outcomePicture(slices);
    rows.push_back(rowOf({"In the file", {}, report_.file, true}, {}));
    rows.back().isSum = true;
    for (const auto& share : report_.effects) rows.push_back(rowOf(share, {}));
    writeTable(withSums({{"Records"}}), rows);
    element("p", report_.balance);
    writeList(report_.differences);
  }

  /// The columns of a count and of the amounts that belong to it.
  Columns withSums(Columns columns) const {
    columns.push_back({"Count", numeric});
    if (!report_.hasAmounts) return columns;
    for (const std::string_view title :
         {"Bill debit", "Bill credit", "Balance debit", "Balance credit"}) {
      columns.push_back({title, numeric});
    }
    return columns;
  }

  void addSums(Row& row, const Sums& sums) const {
    row.cells.push_back(grouped(sums.count));
    if (!report_.hasAmounts) return;
    for (const long double amount :
         {sums.billDebit, sums.billCredit, sums.balanceDebit, sums.balanceCredit}) {
      row.cells.push_back(groupedMoney(amount));
    }
  }

  Row rowOf(const HtmlReport::Share& share, std::string key) const {
    Row row{{share.name}, std::move(key)};
    addSums(row, share.sums);
    if (!share.billed && report_.hasAmounts) row.cells[2] = row.cells[3] = "";
    return row;
  }

  void writeNext() {
    if (report_.next.empty()) return;
    element("h2", "What is left to do");
    writeList(report_.next);
  }

  /// Three columns show the remarks' `what`, too.
  void writeRemarks(std::string_view heading, const Columns& columns,
                    const std::vector<HtmlReport::Remark>& remarks) {
    if (remarks.empty()) return;
    element("h2", heading);
    std::vector<Row> rows;
    rows.reserve(remarks.size());
    for (const auto& [where, what, text] : remarks) {
      rows.push_back(columns.size() == 3 ? Row{{where, what, text}} : Row{{where, text}});
    }
    writeTable(columns, rows);
  }

  void writeParties() {
    if (report_.parties.empty()) return;
    element("h2", "Totals of each party");
    PartyTotals all{"All", {}, {}, {}};
    std::vector<Row> rows;
    for (const PartyTotals& party : report_.parties) {
      rows.push_back(rowOf(party));
      all.file += party.file;
      all.posted += party.posted;
    }
    rows.push_back(rowOf(all));
    rows.back().isSum = true;
    writeTable({{"Code"},
                {"Name"},
                {"Records", numeric},
                {"Posted", numeric},
                {"Balance in the file", numeric},
                {"Balance posted", numeric}},
               rows);
    element("p", "Balances are debit less credit.", "soft");
  }

  static Row rowOf(const PartyTotals& party) {
    const auto balance = [](const Sums& sums) {
      return groupedMoney(sums.balanceDebit - sums.balanceCredit);
    };
    return {{party.code, party.name, grouped(party.file.count), grouped(party.posted.count),
             balance(party.file), balance(party.posted)}};
  }

  void writeMapping() {
    if (report_.mapping.empty()) return;
    element("h2", "Where the values came from");
    std::vector<Row> rows;
    for (const HtmlReport::Fact& fact : report_.mapping) rows.push_back({{fact.name, fact.value}});
    writeTable({{"Field"}, {"Column of the file"}}, rows);
  }

  void writeSignatures() {
    element("h2", "Signatures");
    text_ += "<div class=\"signatures\">\n";
    for (const std::string_view who : {"Prepared by", "Approved by"}) {
      text_ += "<div>";
      element("span", std::string(who) + ": name, date, signature");
      text_ += "</div>\n";
    }
    text_ += "</div>\n";
  }

  void writeList(const std::vector<std::string>& items) {
    if (items.empty()) return;
    text_ += "<ul>\n";
    for (const std::string& item : items) element("li", item);
    text_ += "</ul>\n";
  }

  void writeTable(const Columns& columns, const std::vector<Row>& rows) {
    text_ += "<table>\n<thead><tr>";
    for (const Column& column : columns) {
      text_.append("<th").append(classOf(column.kind)).append(">");
      text_.append(html(column.title)).append("</th>");
    }
    text_ += "</tr></thead>\n<tbody>\n";
    for (const Row& row : rows) writeRow(columns, row);
    text_ += "</tbody>\n</table>\n";
  }

  void writeRow(const Columns& columns, const Row& row) {
    text_ += row.isSum ? "<tr class=\"sum\">" : "<tr>";
    for (std::size_t i = 0; i < columns.size(); ++i) {
      text_.append("<td").append(classOf(columns[i].kind));
      // The style shows it where there is no room for columns.
      text_.append(" data-title=\"").append(html(columns[i].title)).append("\">");
      if (row.cells[i].empty()) {
        text_ += "</td>";  // with nothing in it, which the style looks for
        continue;
      }
      text_.append("<span>").append(i == 0 ? row.key : "").append(html(row.cells[i]));
      text_ += "</span></td>";
    }
    text_ += "</tr>\n";
  }

  void element(std::string_view name, std::string_view content, std::string_view style = {}) {
    text_.append("<").append(name);
    if (!style.empty()) text_.append(" class=\"").append(style).append("\"");
    text_.append(">").append(html(content)).append("</").append(name).append(">\n");
  }

  const HtmlReport& report_;
  std::string text_;
};

}  // namespace

std::string htmlPage(const HtmlReport& report) {
  return Page(report).write();
}

}  // namespace velk
