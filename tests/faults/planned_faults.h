// How a call of the failing driver fails: by the letter of a procedure's call, or by the number of
// any call.
#pragma once

#include <cstddef>
#include <map>
#include <sstream>
#include <string>

#include "platform/odbc/odbc_api.h"

namespace velk {

using Text = std::string;

struct Failure {
  Text state;
  SQLINTEGER native = 0;
  Text message = "told by the driver";
};

struct Fault {
  bool takesEffect = false;
  enum class At { Nowhere, Execute, Columns, Results } at = At::Nowhere;
  Failure failure{};  // no state: the connection string's
  enum class Then {
    GoesOn,
    LeavesCursor,
    IsStuck,
    IsDead,
    Hangs,
    HangsForEver,
    Ends,
    LeavesTransaction
  } then = Then::GoesOn;
};

inline Fault faultOf(char letter) {
  using At = Fault::At;
  using Then = Fault::Then;
  const Failure refused{"23000"};
  static const std::map<char, Fault> faults{
      {'r', {false, At::Execute, refused}},
      {'a', {true, At::Execute}},
      {'b', {false, At::Execute}},
      {'n', {true, At::Columns}},
      {'l', {true, At::Results}},
      {'t', {false, At::Execute, {"HYT00"}}},
      // A refused INSERT and then a SELECT, behind which more is changed.
      {'c', {false, At::Execute, refused, Then::LeavesCursor}},
      {'s', {true, At::Execute, refused, Then::IsStuck}},
      {'e', {true, At::Execute, {"01000", 20017, "Unexpected EOF from the server"}, Then::IsStuck}},
      {'d', {true, At::Execute, {}, Then::IsDead}},
      {'h', {false, At::Execute, {"HY008"}, Then::Hangs}},
      {'H', {false, At::Execute, {"HY008"}, Then::HangsForEver}},
      {'k', {true, At::Nowhere, {}, Then::Ends}},
      {'o', {true, At::Nowhere, {}, Then::LeavesTransaction}},
  };
  const auto found = faults.find(letter);
  return found == faults.end() ? Fault{true} : found->second;
}

/// A fault of one call, or of all from it on: before it was done, or after it.
struct PlannedFault {
  std::size_t at = 0;  // 0: none
  bool isAfter = false;
  bool isLost = false;
  bool goesOn = false;
  Failure failure;
  std::size_t calls = 0;

  PlannedFault() = default;
  explicit PlannedFault(const Text& plan) {
    static const std::map<Text, Failure> kinds{
        {"lost", {"08S01"}},    {"time-out", {"HYT00"}},        {"deadlock", {"40001", 1205}},
        {"refused", {"23000"}}, {"permission", {"42000", 229}}, {"memory", {"HY001"}}};
    Text moment, kind, often;
    std::istringstream(plan) >> at >> moment >> kind >> often;
    isAfter = moment == "after";
    isLost = kind == "lost";
    goesOn = often == "ever";
    if (at > 0) failure = kinds.at(kind);
  }
  bool isDue() {
    ++calls;
    return at > 0 && (calls == at || (goesOn && calls > at));
  }
};

}  // namespace velk
