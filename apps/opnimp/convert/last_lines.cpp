#include "apps/opnimp/convert/last_lines.h"

#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <vector>

#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/cli/printable.h"
#include "apps/opnimp/convert/amount_text.h"
#include "apps/opnimp/convert/title_words.h"
#include "base/text.h"

namespace velk {

namespace {

constexpr std::size_t mostTotals = 3;
// As many languages as titles are known in, and some more; small letters without accents.
constexpr auto totalWords = std::to_array<std::string_view>(
    {"total",     "totals",        "totaal", "totale",      "totaux",       "grandtotal",
     "sum",       "sums",          "summe",  "gesamt",      "gesamtsumme",  "endsumme",
     "summa",     "suma",          "soma",   "somme",       "totalgeneral", "totalgenerale",
     "subtotal",  "zwischensumme", "count",  "razem",       "celkem",       "toplam",
     "osszesen",  "yhteensa",      "ialt",   "endofreport", "reportend",    "endoffile",
     "endoflist", "printed"});

/// Where the last line begins of a text that ends in it.
std::size_t lastLineOf(std::string_view text, char end) {
  const std::size_t before =
      text.size() < 2 ? std::string_view::npos : text.rfind(end, text.size() - 2);
  return before == std::string_view::npos ? 0 : before + 1;
}

/// Of a cell as it is written, such as "Total:" or "Total (2)". "SUM-1" may be a code.
bool saysTotal(std::string_view cell) {
  std::string room;
  std::vector<std::string> words = wordsOf(meantValue(cell, room));
  if (cell.find_first_of("(:") != std::string_view::npos) {
    std::erase_if(words, [](const auto& word) { return std::ranges::all_of(word, isDigit); });
  }
  return std::ranges::count(totalWords, lettersOfWords(words)) > 0;
}

/// "-----", as lines are drawn above totals.
bool isRuler(std::string_view cell) {
  constexpr std::size_t shortest = 3;
  return cell.size() >= shortest && cell.find_first_not_of("-=_*~ ") == std::string_view::npos;
}

bool isFilled(const WrittenCell& cell) {
  const std::string_view value = trim(cell.text);
  return !value.empty() && value != "\"\"";
}

/// "Page 1 of 1": no code is of several words.
bool isRemark(std::span<const WrittenCell> cells, std::size_t width) {
  return cells.size() < width && std::ranges::count_if(cells, isFilled) == 1 &&
         trim(std::ranges::find_if(cells, isFilled)->text).find_first_of(" :") !=
             std::string_view::npos;
}

/// Nothing but amounts, where records have their code or name.
bool isSum(std::span<const WrittenCell> cells, std::size_t width) {
  std::string room;
  return cells.size() == width && width > 2 && !isFilled(cells.front()) &&
         std::ranges::all_of(cells, [&](const WrittenCell& cell) {
           return !isFilled(cell) || readAmount(trim(meantValue(cell.text, room))).has_value();
         });
}

/// A shorter line may be a record that was cut off: its first word has to say what it is. One of
/// the titles' width says nothing but that word, since a name may begin with it.
bool isTotal(const RowReader& row, std::size_t width) {
  const auto filled = std::ranges::find_if(row.cells(), isFilled);
  if (filled == row.cells().end()) return false;
  const std::string_view cell = trim(filled->text);
  const std::string_view first = cell.substr(0, cell.find(' '));
  return saysTotal(cell) || isRuler(cell) || (row.cells().size() != width && saysTotal(first)) ||
         isRemark(row.cells(), width) || isSum(row.cells(), width);
}

char endOf(const Layout& layout) {
  return layout.ends == LineEnds::CarriageReturns ? '\r' : '\n';
}

/// The text up to its last line that is not blank.
std::string_view upToLast(std::string_view text, const Layout& layout) {
  for (;;) {
    const std::size_t start = lastLineOf(text, endOf(layout));
    if (text.empty()) return text;
    RowReader row(text, layout.delimiter, layout.ends, start);
    const bool isEmpty = row.next() && isEmptyRow(row.cells());
    if (!isEmpty && !isBlankRow(text.substr(start))) return text;
    text = text.substr(0, start);
  }
}

}  // namespace

std::size_t countTotals(std::string_view text, const Layout& layout, std::size_t width) {
  for (std::size_t count = 0; count <= mostTotals; ++count) {
    text = upToLast(text, layout);
    const std::size_t start = lastLineOf(text, endOf(layout));
    if (start <= layout.offset) return 0;
    RowReader row(text, layout.delimiter, layout.ends, start);
    if (!row.next() || !isTotal(row, width)) return count;
    text = text.substr(0, start);
  }
  return 0;
}

std::string_view withoutLastLines(std::string_view text, const Layout& layout, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    text = upToLast(text, layout);
    text = text.substr(0, lastLineOf(text, endOf(layout)));
    if (text.size() <= layout.offset) {
      throw UsageError("--skip-last-lines: the file has no " + counted(count, "line", "lines") +
                       " behind its titles");
    }
  }
  return text;
}

}  // namespace velk
