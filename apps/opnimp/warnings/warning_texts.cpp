#include "apps/opnimp/warnings/warning_texts.h"

#include <cstddef>
#include <iterator>

namespace velk {

namespace {

constexpr bool noted = false;
constexpr bool isHarmful = true;

// In the order of WarningId.
constexpr WarningText texts[] = {
    {"byte-order-mark", noted,
     "The file begins with a byte-order mark, which becomes part of the first title: that column "
     "is not mapped by its name. Save the file without it, or use --map with #1."},
    {"utf-16", noted,
     "The file is in UTF-16, of which no title or value is understood. Save it as windows-1252 "
     "text."},
    {"utf-8", isHarmful,
     "The file looks like UTF-8, but is read as windows-1252: letters beyond ASCII come out as two "
     "or three others. Save it as windows-1252 (\"ANSI\")."},
    {"bare-line-feeds", noted,
     "Lines end at carriage return + line feed only: what follows a bare line feed belongs to the "
     "same record. Save the file with Windows line ends."},
    {"bare-carriage-returns", noted,
     "Lines end at carriage return + line feed only: a bare carriage return is part of a value. "
     "Save the file with Windows line ends."},
    {"nul-bytes", isHarmful,
     "A NUL byte splits a field in two. The file may be damaged, or be in UTF-16."},
    {"undefined-bytes", noted,
     "A byte that windows-1252 does not define is kept as a control character. The file may be in "
     "another code page."},
    {"no-records", noted, "The file has no records behind its first line."},
    {"unended-input", isHarmful,
     "Standard input ends within a line: whoever wrote it may have ended in the middle of a value. "
     "Let it write all, the last line end, too."},
    {"too-many-records", noted,
     "More records than a screen takes: they are imported on several screens, one after the "
     "other."},
    {"semicolon-separated", noted,
     "The titles are separated by semicolons; only commas separate. Save the file with commas."},
    {"tab-separated", noted,
     "The titles are separated by tabs; only commas separate. Save the file with commas."},
    {"bar-separated", noted,
     "The titles are separated by vertical bars; only commas separate. Save the file with commas."},
    {"separator-line", noted,
     "The first line tells a spreadsheet program which sign separates, and is read as the titles. "
     "Remove it."},
    {"lines-above-titles", noted,
     "The titles stand further down; the first line must hold them. Remove the lines above."},
    {"quoted-titles", noted,
     "A title keeps its quotes and so matches no field by name. Remove them, or use --map."},
    {"blank-titles", noted, "A column without a title matches no field; use --map with #N."},
    {"duplicate-titles", noted,
     "A title stands twice: of two columns that match a field the later is used."},
    {"column-twice", isHarmful,
     "Two columns have the title of one field and different values: the later column is used. "
     "Rename the other."},
    {"column-not-mapped", isHarmful,
     "A column is not mapped to any field, and its values are not imported. Rename it, or use "
     "--map."},
    {"first-value-empty", isHarmful,
     "A column is not mapped by its name because the first record has no value in it: none of its "
     "values is imported. Give that record one, or use --map."},
    {"short-lines", isHarmful,
     "A line has fewer fields than there are titles: the missing ones are empty."},
    {"long-lines", isHarmful,
     "A line has more fields than there are titles: the further ones are left out, and values may "
     "stand in wrong columns. An amount such as 1,250.00 needs quotes, or no comma."},
    {"line-break-in-quotes", isHarmful,
     "A quoted value seems to go on in the next line. A line break always ends a record: the two "
     "halves are two records."},
    {"unbalanced-quotes", isHarmful,
     "A quote is missing: the commas behind it do not separate, so that the rest of the line is "
     "one value."},
    {"equal-rows", isHarmful,
     "A row, or all that is posted of it, is there twice, and each is posted. Remove one of them."},
    {"same-reference", isHarmful,
     "A party has the same reference twice, and each record is posted. Remove one of them, or "
     "correct its reference."},
    {"split-amount", isHarmful,
     "An amount with a comma and without quotes, such as 1,250.00, seems to be two values: 1 and "
     "250.00, and what follows stands in wrong columns. Put it in quotes, or leave its commas "
     "out."},
    {"quoted-commas", isHarmful,
     "A comma inside quotes is dropped from the value: \"Smith, John\" becomes Smith John."},
    {"leading-quote", isHarmful,
     "A text that begins with a double quote loses it, and its last character, too."},
    {"blanks-around-code", isHarmful,
     "A code has blanks around it, and is looked up and posted with them. Remove them."},
    {"unseen-in-code", isHarmful,
     "A code has a character that is not seen: a control character, a soft hyphen or a no-break "
     "space. Some databases pass over it and take the code for another. Remove it."},
    {"value-too-long", isHarmful,
     "A text is longer than the database's procedure takes, which cuts it without a word, or "
     "refuses "
     "it. Shorten it, or have the procedure take more."},
    {"amount-not-a-number", isHarmful,
     "A text without a number reads as 0; a bill of 0 is skipped."},
    {"amount-too-large", isHarmful,
     "An amount is beyond the range of numbers: the import stops at this record. Correct it "
     "first."},
    {"amount-decimal-comma", isHarmful,
     "Commas are dropped and only a point marks decimals: \"1.234,50\" reads as 1.2345 and "
     "\"12,50\" as 1250."},
    {"amount-in-parentheses", isHarmful,
     "An amount in parentheses reads as 0. Write a negative amount with a minus in front."},
    {"amount-trailing-minus", isHarmful,
     "A minus behind an amount is not seen: it reads as positive. Write it in front."},
    {"amount-currency", isHarmful,
     "An amount with a currency sign or other text in front reads as 0."},
    {"amount-blank-inside", isHarmful, "An amount ends at a blank inside it: 1 234 reads as 1."},
    {"amount-exponent", isHarmful,
     "An amount with an exponent reads as a power of ten: 500D2 as 50,000. Write all its digits."},
    {"amount-partly-read", isHarmful,
     "Only the number at the start of an amount is read, the rest is ignored."},
    {"opposite-signs", isHarmful,
     "Bill amount and balance have opposite signs: the balance is posted with the sign of the "
     "bill. Give both the same sign."},
    {"sum-far-from-others", noted,
     "The balances of one party come to more than fifty times those of any other. Look at its "
     "amounts once more."},
    {"date-unreadable", isHarmful,
     "A date cannot be read: the import stops there, unless the code is unknown. Correct it "
     "first."},
    {"date-month-first", noted,
     "A date makes sense only with the month first. Dates are read day first: if the file has the "
     "month first, those that read both ways are taken wrongly."},
    {"date-reads-both-ways", noted,
     "A date reads day first and month first; it is taken day first: 03/04/2008 is 3 April."},
    {"date-order-uncertain", isHarmful,
     "A date reads day first and month first and is taken day first, but other dates of this file "
     "have the month first. Write all dates day first, or with the month by its name."},
    {"date-without-year", isHarmful, "A date without a year is taken as one of the current year."},
    {"date-without-day", isHarmful, "A date without a day is taken as the first of its month."},
    {"date-long-past", isHarmful,
     "A date lies more than fifty years back. A year of two digits from 30 on is one of the 1900s, "
     "and programs write a day of 1899 or 1900 for a date that is missing."},
    {"duplicate-vendors", isHarmful,
     "A row above has this vendor already: databases take each once, and refuse the second."},
    {"duplicate-branches", isHarmful,
     "A row above has this branch of the bank already: databases take each once, and refuse the "
     "second."},
    {"bank-names-differ", isHarmful,
     "A row above gives this bank another name, and a database keeps one of them only. Write the "
     "same in each row."},
    {"locality-unknown", isHarmful,
     "A Locality that is not Outstation, or Out Station, is taken as local."},
    {"sale-type-unknown", isHarmful,
     "A Sale Type that is not First Sales, or FirstSales, is taken as second sales."},
    {"rows-not-read", noted,
     "Reading ends at the first row that is blank in columns A to E: a row with data from there on "
     "is not read. Remove the blank row."},
    {"other-columns", noted, "Columns after the seventh (G) are not read."},
    {"error-values", isHarmful,
     "The formula of a cell has no result; what is read is its error, such as #N/A."},
    {"uncalculated-formulas", isHarmful,
     "The workbook does not contain the result of a formula: the cell is read as empty or 0. Open "
     "it in a spreadsheet program and save it there."},
    {"hidden-rows", isHarmful,
     "A row, or the column of a value, is hidden in the workbook, perhaps by a filter, and is "
     "posted all the same. Show and check it, or delete it."},
    {"hidden-sheet", isHarmful,
     "The first worksheet, which is the one that is read, is hidden. Show it and look at it, or "
     "move the right one to the front."},
    {"duplicate-salesmen", isHarmful,
     "A row above has this salesman already: both rows are posted, and the later one usually "
     "replaces the earlier."},
    {"no-ds-type", noted, "A salesman without a DSType is refused."},
    {"handheld-yes-becomes-no", isHarmful,
     "Only YES in capital letters is saved as yes: Yes and yes are saved as No. Write YES."},
    {"handheld-becomes-no", isHarmful,
     "A HandHeld DS value that is neither YES nor NO is saved as No."},
};
static_assert(std::size(texts) == static_cast<std::size_t>(WarningId::HandheldBecomesNo) + 1);

}  // namespace

const WarningText& warningText(WarningId id) {
  return texts[static_cast<std::size_t>(id)];
}

std::span<const WarningText> allWarnings() {
  return texts;
}

}  // namespace velk
