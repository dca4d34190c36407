// All warnings that there are: a row each.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace velk {

/// In the order of the rows.
enum class WarningId : std::uint8_t {
  // Of the file as a whole
  ByteOrderMark,
  Utf16,
  Utf8,
  BareLineFeeds,
  BareCarriageReturns,
  NulBytes,
  UndefinedBytes,
  NoRecords,
  UnendedInput,
  TooManyRecords,
  SemicolonSeparated,
  TabSeparated,
  BarSeparated,
  SeparatorLine,
  LinesAboveTitles,
  // Of its titles and columns
  QuotedTitles,
  BlankTitles,
  DuplicateTitles,
  ColumnTwice,
  ColumnNotMapped,
  FirstValueEmpty,
  // Of a record
  ShortLines,
  LongLines,
  LineBreakInQuotes,
  UnbalancedQuotes,
  EqualRows,
  SameReference,
  SplitAmount,
  // Of a value
  QuotedCommas,
  LeadingQuote,
  BlanksAroundCode,
  UnseenInCode,
  ValueTooLong,
  AmountNotANumber,
  AmountTooLarge,
  AmountDecimalComma,
  AmountInParentheses,
  AmountTrailingMinus,
  AmountCurrency,
  AmountBlankInside,
  AmountExponent,
  AmountPartlyRead,
  OppositeSigns,
  SumFarFromOthers,
  DateUnreadable,
  DateMonthFirst,
  DateReadsBothWays,
  DateOrderUncertain,
  DateWithoutYear,
  DateWithoutDay,
  DateLongPast,
  DuplicateVendors,
  DuplicateBranches,
  BankNamesDiffer,
  LocalityUnknown,
  SaleTypeUnknown,
  // Of a workbook
  RowsNotRead,
  OtherColumns,
  ErrorValues,
  UncalculatedFormulas,
  HiddenRows,
  HiddenSheet,
  DuplicateSalesmen,
  NoDsType,
  HandheldYesBecomesNo,
  HandheldBecomesNo,
};

struct WarningText {
  std::string_view code;  ///< for programs, and for --accept
  /// What would be posted is not what is written: an import posts nothing unless it is accepted.
  bool harmful = false;
  std::string_view text;  ///< what it means for the import
};

const WarningText& warningText(WarningId id);
std::span<const WarningText> allWarnings();

}  // namespace velk
