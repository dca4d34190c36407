// Amounts that were written with commas and without quotes, such as 1,250.00, so that each is two
// values or more, in a row that has no more values than there are titles.
#pragma once

#include <cstddef>
#include <vector>

#include "apps/opnimp/warnings/checked_record.h"

namespace velk {

/// A value of a row, by what it looks like.
struct CellShape {
  bool isBlank = false;
  bool isNumber = false;        ///< digits, a minus in front, a point, and commas within quotes
  bool isHead = false;          ///< may be what stands before the first comma: 1, 12 or -125
  bool isGroup = false;         ///< may be what follows: 250, 250.00, and 00 of a decimal comma
  bool startsWithZero = false;  ///< of a group: 000 or 050.00, which nobody writes by itself
  std::optional<std::size_t> cents;  ///< digits behind the point
  bool endsInZero = false;           ///< the last of them
  double value = 0;                  ///< of a head or group
};

/// A bill of 500 and a balance of 300 look like 500,300, too. So what looks like parts of one
/// amount is harmful only where something else says so:
/// - the second part begins with a zero, in a column of amounts or with cents;
/// - the balance would be above the bill, and only the balance has cents;
/// - two such amounts follow each other, with cents at the end of each only;
/// - a name or reference behind them is a number with cents;
/// - the second part stands in no column of amounts, and all other amounts of the file have two
///   decimals, as of these two only the second one has;
/// - a column behind them, else only of texts, has a number with cents, or two such columns have
///   numbers.
class SplitAmounts {
 public:
  explicit SplitAmounts(const CheckedFile& file);

  void check(const CheckedRecord& record);
  /// The warnings, when all records were seen.
  void finish(std::vector<Warning>& warnings);

 private:
  /// A record whose values look so, but may be what they seem.
  struct Doubt {
    std::size_t record;
    bool isSure;
    bool hasCents;         // the second part only
    bool hasNumberBehind;  // where texts may stand
  };
  struct Column {
    bool isAmount = false;
    bool isText = false;  // of a field: a name or reference
    std::size_t numbers = 0;
    std::size_t texts = 0;
  };

  void read(const CheckedRecord& record);
  bool isSplitAt(std::size_t column) const;
  bool isSure(std::size_t column) const;
  bool hasNumberBehind(std::size_t column, bool onlyInTexts) const;
  void learn(bool isDoubtful);
  bool isProved(const Doubt& doubt);

  const CheckedFile& file_;
  std::vector<Column> columns_;
  std::vector<std::size_t> amounts_;  // columns of them, in their order
  std::vector<CellShape> row_;        // the record at hand, from the first amount on
  std::vector<Doubt> doubts_;
  std::size_t withCents_ = 0;  // amounts with two decimals
  bool endsInZero_ = false;    // one of these
  bool isMixed_ = false;       // other amounts have none, or one, or more
};

}  // namespace velk
