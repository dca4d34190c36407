// The report of a run as a page to print, sign and keep. It needs nothing but itself: no network,
// no script. Where its values come from is not its matter; each is shown as text, whatever it
// holds.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "apps/opnimp/audit/party_totals.h"
#include "apps/opnimp/report/html_picture.h"

namespace velk {

struct HtmlReport {
  struct Fact {
    std::string name;
    std::string value;
  };
  /// Some records, with their amounts.
  struct Share {
    std::string name;
    Tone tone = Tone::Good;
    Sums sums;
    bool billed = true;  ///< false: it carries balances only
  };
  struct Remark {
    std::string where;  ///< such as "line 5"
    std::string what;
    std::string text;
  };

  std::string title;
  std::string verdict;  ///< the whole result in a sentence or two
  Tone tone = Tone::Good;
  std::vector<Fact> facts;  ///< of the run: file, database, time, user and so on

  bool hasAmounts = false;      ///< false: there are only counts to show
  std::vector<Share> outcomes;  ///< together all records of the file
  std::vector<Share> effects;   ///< what was posted, by the calls that took effect
  Sums file;
  std::string balance;  ///< whether the account adds up
  std::vector<std::string> differences;

  std::vector<std::string> next;  ///< what is left to do
  std::vector<Remark> attention;  ///< `what` is the outcome
  std::vector<Remark> assumed;    ///< `what` is a code, or empty: it is not shown
  std::vector<PartyTotals> parties;
  std::vector<Fact> mapping;  ///< field and column
};

/// The page, in UTF-8.
std::string htmlPage(const HtmlReport& report);

}  // namespace velk
