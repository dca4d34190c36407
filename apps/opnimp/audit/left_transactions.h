// Whether procedures leave a transaction open. What is posted in it is lost when the connection
// closes, without an error anywhere.
#pragma once

#include <cstddef>
#include <functional>
#include <utility>

namespace velk {

class LeftTransactions {
 public:
  /// `isOpen` asks the database: a round trip, so that it is not asked behind every call.
  explicit LeftTransactions(std::function<bool()> isOpen) : isOpen_(std::move(isOpen)) {}

  enum class Found { Nothing, OfTheseCalls, OfAnEarlierCall };
  /// Behind each call of a procedure that posts, or each `count` that were sent together. Asks
  /// behind the first ones, behind each where it is likely, as one that failed, and now and then.
  Found afterCalls(std::size_t count, bool isLikely);
  /// Behind the last one of a run.
  Found atEnd();

 private:
  Found ask(std::size_t count);

  std::function<bool()> isOpen_;
  std::size_t calls_ = 0;
  std::size_t asked_ = 0;  // how many calls there were when no transaction was open
};

}  // namespace velk
