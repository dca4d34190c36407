#include "apps/opnimp/audit/left_transactions.h"

namespace velk {

namespace {

/// A procedure that does it at all mostly does it each time: both of the first two records show it.
constexpr std::size_t firstCalls = 4;
/// Then a question costs a record a sixteenth of a round trip.
constexpr std::size_t seldom = 32;

}  // namespace

LeftTransactions::Found LeftTransactions::afterCall(bool failed) {
  ++calls_;
  const bool due = calls_ <= firstCalls || failed || calls_ % seldom == 0;
  return due ? ask() : Found::Nothing;
}

LeftTransactions::Found LeftTransactions::atEnd() {
  return calls_ == asked_ ? Found::Nothing : ask();
}

LeftTransactions::Found LeftTransactions::ask() {
  if (isOpen_()) return calls_ - asked_ == 1 ? Found::OfThisCall : Found::OfAnEarlierCall;
  asked_ = calls_;
  return Found::Nothing;
}

}  // namespace velk
