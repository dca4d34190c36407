#include "apps/opnimp/convert/conversion.h"

#include <algorithm>
#include <utility>

#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/cli/printable.h"
#include "apps/opnimp/convert/canonical_writer.h"
#include "apps/opnimp/convert/last_lines.h"
#include "apps/opnimp/convert/layout.h"
#include "apps/opnimp/convert/sheet_text.h"
#include "apps/opnimp/convert/shown_amounts.h"
#include "apps/opnimp/convert/source_text.h"
#include "apps/opnimp/convert/title_doubt.h"
#include "apps/opnimp/convert/value_survey.h"
#include "base/text.h"

namespace velk {

namespace {

/// A column with dates or amounts.
struct ValueColumn {
  std::size_t column;
  FieldNature nature;
};

/// Of a line that is left out.
constexpr std::size_t mostOfLineShown = 80;

class Converter {
 public:
  Converter(std::string_view bytes, const Arguments& arguments)
      : arguments_(arguments),
        source_(bytes, arguments.convert),
        layout_(findLayout(source_.text(), arguments)),
        text_(withoutLastLines(source_.text(), layout_, arguments.convert.lastLines.value_or(0))),
        isCanonical_(source_.isCanonical() && layout_.isCanonical) {
    // Pairs within quotes end a line on the screens only.
    if (!isCanonical_ && layout_.ends == LineEnds::Pairs) layout_.ends = LineEnds::LineFeeds;
  }
  Converter(const SheetText& sheet, const Arguments& arguments)
      : arguments_(arguments),
        sheet_(&sheet),
        source_(sheet.text()),
        layout_(findSheetLayout(source_.text(), arguments)),
        text_(withoutLastLines(source_.text(), layout_, arguments.convert.lastLines.value_or(0))),
        isCanonical_(false) {
    result_.isSheet = true;
    assume(sheet.assumption());
  }

  Conversion convert() {
    readTitles();
    result_.isSplitAtCommas = sheet_ == nullptr && layout_.delimiter == ',';
    // Nothing in such a file could be told otherwise.
    const bool isPlain = isCanonical_ && columns_.empty() && !titleDoubt_.isOpen();
    if (!isPlain || mayHaveSpacedQuotes() || mayHaveEmptyRows()) survey();
    tellText();
    tellLayout();
    rules_ = survey_.decide(arguments_.convert, isCanonical_);
    offer(rules_.choices);
    std::ranges::move(rules_.assumptions, std::back_inserter(result_.assumptions));
    if (rules_.ordersAreSure) result_.dateOrder = rules_.dateOrder;
    if (rules_.decimalIsSure) result_.decimal = rules_.decimal;
    for (const std::string& refusal : rules_.refusals) refuse(refusal);
    if (sheet_ != nullptr) tellShown();
    refuseSpaced();
    refuseBroken();
    refuseUnread();
    const bool isWritten = !isCanonical_ || renames_ || rules_.changeValues || quotedTitles_ ||
                           empty_ || text_.size() < source_.text().size();
    if (result_.refusal.empty() && isWritten) write();
    return std::move(result_);
  }

 private:
  void refuse(const std::string& why) {
    result_.refusal.append(result_.refusal.empty() ? "" : "; ").append(why);
  }

  void offer(const std::vector<std::string>& choices) {
    result_.choices.insert(result_.choices.end(), choices.begin(), choices.end());
  }

  void assume(Assumption assumption) { result_.assumptions.push_back(std::move(assumption)); }

  void readTitles() {
    RowReader rows = layout_.rows(text_);
    if (!rows.next()) return;
    width_ = rows.cells().size();
    for (std::size_t column = 0; column < width_; ++column) {
      const std::string_view written = rows.cells()[column].text;
      const std::string title(valueText(rows.cells()[column]));
      // A title with a comma keeps its quotes, without which it would be two.
      const bool isFreed = written.size() > 2 && written.starts_with('"') &&
                           title.find_first_of(",\"") == std::string_view::npos;
      quotedTitles_ = quotedTitles_ || isFreed;
      titles_.push_back(title);
      const FieldNature nature = natureOf(title, column, arguments_);
      result_.natures.push_back(nature);
      if (nature != FieldNature::Text) columns_.push_back({column, nature});
    }
    renamed_.resize(width_);
    titleDoubt_ = TitleDoubt(rows, titles_, result_.natures, arguments_);
    if (arguments_.command == Arguments::Command::Convert) renameTitles();
    if (quotedTitles_ && isCanonical_) {
      assume({"titles", "without their quotes", "line 1 has them in quotes", ""});
    }
  }

  /// By --map: no further word is needed of what is written so. A title that its field has taken
  /// from another column stays apart by the column's number.
  void renameTitles() {
    for (std::size_t column = 0; column < titles_.size(); ++column) {
      renamed_[column] = fieldTitleOf(titles_[column], column, arguments_);
      renames_ = renames_ || !renamed_[column].empty();
    }
  }

  /// The values of a row of another width are not where they belong: it stays as it is, and the
  /// warnings tell of it.
  bool hasValues(const RowReader& rows) const {
    return !rows.isBroken() && rows.cells().size() == width_;
  }

  /// Only a value that begins with its quote is read as a quoted one.
  static bool isSpacedQuote(const WrittenCell& cell) {
    if (cell.isPlain || cell.text.starts_with('"')) return false;
    const std::size_t first = cell.text.find_first_not_of(" \t");
    return first != std::string_view::npos && cell.text[first] == '"';
  }

  bool mayHaveSpacedQuotes() const {
    return text_.find(" \"") != std::string_view::npos ||
           text_.find("\t\"") != std::string_view::npos;
  }

  /// Of a file in the format of the screens.
  bool mayHaveEmptyRows() const {
    return text_.find("\n,") != std::string_view::npos ||
           text_.find("\n ") != std::string_view::npos ||
           text_.find("\n\"\"") != std::string_view::npos;
  }

  void survey() {
    RowReader rows = layout_.rows(text_);
    rows.next();
    while (rows.next()) {
      if (isBlankRow(rows.row())) continue;
      if (isEmptyRow(rows.cells())) {
        empty_.add("", rows.line());
        continue;
      }
      ++rows_;
      if (rows.cells().size() == width_) ++wellFormed_;
      if (rows.isBroken()) broken_.add(rows.row(), rows.line());
      if (std::ranges::any_of(rows.cells(), isSpacedQuote)) spaced_.add(rows.row(), rows.line());
      if (!hasValues(rows)) {
        unread_.add(rows.row(), rows.line());
        continue;
      }
      if (titleDoubt_.isOpen()) titleDoubt_.addRecord(rows);
      if (sheet_ != nullptr) noteOddCells(rows.line());
      for (const ValueColumn& column : columns_) surveyValue(rows, column);
    }
  }

  void surveyValue(const RowReader& rows, const ValueColumn& column) {
    if (const SheetCell* const held = heldCell(rows, column)) {
      if (column.nature == FieldNature::Amount) shown_.add(*held, survey_);
      return;
    }
    const std::string_view value = valueText(rows.cells()[column.column]);
    if (value.empty()) return;
    if (column.nature == FieldNature::Date) {
      survey_.addDate(value, rows.line());
    } else {
      survey_.addAmount(value, rows.line());
    }
  }

  /// What a cell of a worksheet holds says itself how it is read.
  const SheetCell* heldCell(const RowReader& rows, const ValueColumn& column) const {
    if (sheet_ == nullptr) return nullptr;
    return sheet_->held(rows.line(), column.column, column.nature);
  }

  /// Numbers lose what their formats say of them.
  void tellShown() {
    if (auto assumption = shown_.assumption()) assume(*std::move(assumption));
    if (const std::string why = shown_.refusal(); !why.empty()) refuse(why);
    if (!rules_.leavesCurrencies) return;
    refuse("amounts are in several currencies, the first in another one being " +
           rules_.otherCurrency + ": import each on its own");
  }

  void noteOddCells(std::size_t line) {
    for (std::size_t column = 0; column < width_; ++column) {
      const SheetCell* const cell = sheet_->cell(line, column);
      if (cell == nullptr) continue;
      const auto note = [&](CellOddity oddity) {
        result_.oddCells.push_back({line, column, oddity, std::string(cell->text)});
      };
      if (cell->kind == SheetCell::Kind::Error) note(CellOddity::Error);
      if (cell->kind == SheetCell::Kind::NoResult) note(CellOddity::NoResult);
      if (cell->isHidden) note(CellOddity::Hidden);
    }
  }

  /// A value as UTF-8, without its quotes and the blanks around it.
  std::string_view valueText(const WrittenCell& written) {
    if (written.isPlain) return trim(written.text);
    const std::string_view value = trim(meantValue(written.text, room_));
    if (source_.isUtf8() || isAscii(value)) return value;
    decoded_ = CodePage::windows1252().decode(value);
    return decoded_;
  }

  void tellText() {
    if (source_.assumption()) assume(*source_.assumption());
    if (!source_.refusal().empty()) refuse(source_.refusal());
    offer(source_.choices());
  }

  void tellLayout() {
    for (Assumption& assumption : layout_.assumptions) assume(std::move(assumption));
    if (!layout_.refusal.empty()) refuse(layout_.refusal);
    offer(layout_.choices);
    if (const std::string why = titleDoubt_.refusal(); layout_.refusal.empty() && !why.empty()) {
      refuse(why);
      offer({titleDoubt_.choice()});
    }
    tellLastLines();
    if (empty_ && sheet_ == nullptr) {
      assume({"rows without a value", "left out",
              counted(empty_.count, "row", "rows") + ", the first being that of line " +
                  grouped(empty_.line),
              ""});
    }
    if (arguments_.convert.delimiter) {
      assume({"delimiter", delimiterName(layout_.delimiter),
              arguments_.convert.origin("--delimiter"), ""});
    }
    if (layout_.delimiter == ',' || arguments_.convert.delimiter) return;
    const std::string counts = grouped(wellFormed_) + " of " + counted(rows_, "line", "lines") +
                               (rows_ == 1 ? " has " : " have ") +
                               counted(width_, "value", "values");
    assume({"delimiter", delimiterName(layout_.delimiter),
            layout_.separatorLine.empty() ? counts : layout_.separatorLine + ", and " + counts,
            "--delimiter SIGN"});
  }

  void tellLastLines() {
    const std::optional<std::size_t> given = arguments_.convert.lastLines;
    if (given && *given > 0) {
      const std::string_view rest = source_.text().substr(text_.size());
      assume({"last lines", counted(*given, "line left out", "lines left out"),
              arguments_.convert.origin("--skip-last-lines") + "; they begin with " +
                  beginningOf(rest),
              ""});
    } else if (!given) {
      offerTotals(countTotals(text_, layout_, width_));
    }
  }

  void offerTotals(std::size_t count) {
    if (count == 0) return;
    const std::string option = "--skip-last-lines " + std::to_string(count);
    offer({option});
    const std::string_view rest = text_.substr(withoutLastLines(text_, layout_, count).size());
    refuse("the last " + (count == 1 ? "line seems" : grouped(count) + " lines seem") +
           " to be no record, beginning with " + beginningOf(rest) +
           ": leave out what is none with " + option +
           ", or say with --skip-last-lines 0 that all are records");
    offer({"--skip-last-lines 0"});
  }

  static std::string beginningOf(std::string_view lines) {
    return "\"" + cutTo(printable(lines.substr(0, lines.find_first_of("\r\n"))), mostOfLineShown) +
           "\"";
  }

  void refuseSpaced() {
    if (!spaced_) return;
    refuse("a blank stands before the quote of a value in " +
           counted(spaced_.count, "record", "records") + ", the first being that of line " +
           grouped(spaced_.line) + ", and the quotes would be part of it: remove the blank");
  }

  /// In the format of the screens the warnings tell what they make of such a row.
  void refuseBroken() {
    if (!broken_ || (isCanonical_ && !rules_.changeValues)) return;
    refuse("a quote is missing, or stands within a quoted value, in " +
           counted(broken_.count, "record", "records") + ", the first being that of line " +
           grouped(broken_.line) + ": correct it");
  }

  /// While others are rewritten, those of such a row would be read otherwise than they are.
  void refuseUnread() {
    const bool isRewritten = rules_.changeValues || (!isCanonical_ && !columns_.empty());
    if (!unread_ || !isRewritten || broken_.count == unread_.count) return;
    refuse(
        "dates and amounts may be read otherwise than the screens do, but where those of " +
        counted(unread_.count, "record", "records") +
        " stand cannot be told, for there are more or fewer values than titles, or quotes in the "
        "middle of a value; the first is that of line " +
        grouped(unread_.line) + ": correct it, or remove it");
  }

  void write() {
    CanonicalWriter writer(source_.isUtf8(), isCanonical_, !isCanonical_ || empty_);
    writer.reserve(text_.size(), rows_ + 1);
    RowReader rows = layout_.rows(text_);
    for (bool isHeader = true; rows.next(); isHeader = false) {
      if (!isHeader && isBlankRow(rows.row()) && !isCanonical_) continue;
      if (!isHeader && isEmptyRow(rows.cells())) continue;
      if (isHeader) {
        writer.writeTitles(rows, renamed_);
      } else if (!hasValues(rows)) {
        writer.writeRow(rows);
      } else {
        writer.beginRow(rows);
        rewriteValues(rows, writer);
        writer.endRow(rows);
      }
    }
    finish(writer);
  }

  void rewriteValues(const RowReader& rows, CanonicalWriter& writer) {
    std::size_t next = 0;
    for (const ValueColumn& column : columns_) {
      const std::string_view value = valueText(rows.cells()[column.column]);
      bool fits = true;
      const SheetCell* const held = heldCell(rows, column);
      const auto cell = held != nullptr ? std::optional(canonicalText(*held))
                        : column.nature == FieldNature::Date
                            ? canonicalDateCell(value, rules_, fits)
                            : canonicalAmountCell(value, rules_, fits);
      if (!fits) misfits_.add(value, rows.line());
      if (!cell) continue;
      writer.writeCells(rows, next, column.column);
      writer.writeValue(*cell, column.column);
      next = column.column + 1;
    }
    writer.writeCells(rows, next, width_);
  }

  void finish(CanonicalWriter& writer) {
    if (misfits_) {
      refuse("with --date-order and --decimal as given " +
             counted(misfits_.count, "value makes", "values make") + " no sense, the first being " +
             misfits_.first());
    }
    if (writer.lacking()) tellLacking(writer.lacking());
    if (writer.unheldTitles()) {
      result_.titles = titles_;
      assume({"titles with letters that windows-1252 does not have", "? and the column's number",
              counted(writer.unheldTitles().count, "title", "titles") + ", the first being " +
                  writer.unheldTitles().first(),
              ""});
    }
    result_.commas = writer.commas().count;
    result_.firstComma = writer.commas().line;
    if (!result_.refusal.empty()) return;
    std::string bytes = writer.takeBytes();
    if (isCanonical_ && bytes == source_.text()) return;
    result_.bytes = std::move(bytes);
    result_.lines = writer.takeLines();
  }

  /// What programs write for letters that they cannot read, and in front of a text.
  static bool isDamage(std::string_view value) {
    return value.find("\xEF\xBF\xBD") != std::string_view::npos ||
           value.find("\\uFEFF") != std::string_view::npos;  // as it is printed
  }

  void tellLacking(const ClueTally& lacking) {
    const std::string values =
        counted(lacking.count, "value", "values") + ", the first being " + lacking.first();
    if (isDamage(lacking.text)) {
      return refuse(
          "letters were lost before, or two files put together: a mark that is no letter "
          "stands in " +
          values + ": correct them");
    }
    if (arguments_.convert.replace) {
      assume({"letters that windows-1252 does not have", "?", values, ""});
    } else {
      refuse("windows-1252, which the screens read, does not have all letters of " + values +
             ": correct them, or import them with \"?\" in their place with --replace");
      offer({"--replace"});
    }
  }

  const Arguments& arguments_;
  const SheetText* sheet_ = nullptr;  // that the text is of
  SourceText source_;
  Layout layout_;
  std::string_view text_;  // without the lines that are no records
  const bool isCanonical_;
  std::size_t width_ = 0;  // values in the line of titles
  std::vector<ValueColumn> columns_;
  std::vector<std::string> titles_;   // in UTF-8
  std::vector<std::string> renamed_;  // the same as they are written, if otherwise
  bool renames_ = false;
  bool quotedTitles_ = false;
  TitleDoubt titleDoubt_;
  std::size_t rows_ = 0;
  std::size_t wellFormed_ = 0;  // rows as wide as the titles
  ClueTally empty_;             // rows of separators
  ClueTally broken_;
  ClueTally unread_;  // rows of which nobody knows where the values stand
  ClueTally misfits_;
  ClueTally spaced_;  // rows with a blank before a quote
  ValueSurvey survey_;
  ShownAmounts shown_;
  ValueRules rules_;
  std::string room_;
  std::string decoded_;
  Conversion result_;
};

void refuseTextOptions(const ConvertOptions& options) {
  if (options.encoding.empty() && !options.delimiter) return;
  throw UsageError(std::string(options.delimiter ? "--delimiter" : "--encoding") +
                   " is of texts, and the file is a workbook: leave it out");
}

}  // namespace

Conversion convert(std::string_view bytes, const Arguments& arguments) {
  if (!arguments.convert.sheet.empty()) {
    throw UsageError("--sheet is of workbooks, and the file is none: leave it out");
  }
  return Converter(bytes, arguments).convert();
}

Conversion convertWorkbook(std::string_view bytes, const Arguments& arguments) {
  refuseTextOptions(arguments.convert);
  const SheetText sheet(bytes, arguments);
  if (sheet.refusal().empty()) return Converter(sheet, arguments).convert();
  Conversion conversion;
  conversion.isSheet = true;
  conversion.bytes.emplace();
  conversion.refusal = sheet.refusal();
  conversion.choices = sheet.choices();
  return conversion;
}

}  // namespace velk
