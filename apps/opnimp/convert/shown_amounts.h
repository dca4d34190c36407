// The amounts of a worksheet beside the texts in which their cells show them.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "apps/opnimp/convert/assumption.h"
#include "apps/opnimp/convert/value_survey.h"
#include "apps/opnimp/sheets/sheet_set.h"

namespace velk {

class ShownAmounts {
 public:
  /// A number in a column of amounts; its currency goes to the survey.
  void add(const SheetCell& cell, ValueSurvey& survey);

  /// What people see as a credit is a debit by its value, or the other way, or they see a hundred
  /// times the value; empty: nothing is so.
  std::string refusal() const;
  /// Amounts below zero that show nothing of it.
  std::optional<Assumption> assumption() const;

 private:
  ClueTally percents_;
  ClueTally others_;
  ClueTally bare_;
};

}  // namespace velk
