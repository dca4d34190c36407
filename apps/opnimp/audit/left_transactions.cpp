#include "apps/opnimp/audit/left_transactions.h"

namespace velk {

namespace {

/// A procedure that does it at all mostly does it each time: both of the first two records show it.
constexpr std::size_t firstCalls = 4;
/// Then a question costs a record a sixteenth of a round trip.
constexpr std::size_t seldom = 32;

}  // namespace

LeftTransactions::Found LeftTransactions::afterCalls(std::size_t count, bool isLikely) {
  const std::size_t before = calls_;
  calls_ += count;
  const bool due = before < firstCalls || isLikely || calls_ / seldom != before / seldom;
  return due ? ask(count) : Found::Nothing;
}

LeftTransactions::Found LeftTransactions::atEnd() {
  return calls_ == asked_ ? Found::Nothing : ask(1);
}

LeftTransactions::Found LeftTransactions::ask(std::size_t count) {
  if (isOpen_()) return calls_ - asked_ == count ? Found::OfTheseCalls : Found::OfAnEarlierCall;
  asked_ = calls_;
  return Found::Nothing;
}

}  // namespace velk
