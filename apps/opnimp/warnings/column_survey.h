// What columns that no field is mapped to hold, told by their values: whatever their titles are.
#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "apps/opnimp/warnings/checked_record.h"

namespace velk {

class ColumnSurvey {
 public:
  /// Of files of opening balances. Reads their records once more if a column is not mapped, up to
  /// where nothing can change any more.
  explicit ColumnSurvey(const CheckedFile& file);

  /// Most values are dates, eight digits too, or all are days as spreadsheet programs count them,
  /// of the last years. False where a date is mapped; the same of references.
  bool holdsDates(std::size_t column) const;
  /// Nearly all values are different, and look like the number of a document.
  bool holdsReferences(std::size_t column) const;
  /// All values say debit or credit, or name a document that is one, and the signs of the bills say
  /// something else.
  bool holdsSides(std::size_t column) const;

 private:
  struct Column {
    bool isAsked = false;  // no field is mapped to it
    bool isOther = false;  // its title says what it is, and that this is no document
    bool isGrade = false;  // its title says that letters in it are no sides
    std::size_t values = 0;
    std::size_t dates = 0;
    std::size_t days = 0;  // numbers that count them
    double firstDay = 0;
    bool daysDiffer = false;
    std::size_t roundDays = 0;
    std::size_t looked = 0;  // values of which it is known whether they are references
    std::size_t references = 0;
    std::set<std::string, std::less<>> different;
    bool sidesOnly = true;
    std::string letters;       // the different ones among values of one letter
    bool creditOnly = false;   // and the title is of how bills are paid
    bool againstSign = false;  // a side is not that of the bill, by the usual custom of customers
    bool alongSign = false;    // a side is that of the bill
    bool noteAgainstSign = false;
  };

  void look(Column& column, const std::string& text, double bill);
  void lookForDate(Column& column, const std::string& text) const;
  void lookForReference(Column& column, const std::string& text) const;
  static void lookForSide(Column& column, const std::string& text, double bill);
  bool isSettled() const;

  bool wantsDates_ = false;
  bool wantsReferences_ = false;
  bool isOfVendors_ = false;
  int currentYear_ = 0;
  std::vector<Column> columns_;
};

}  // namespace velk
