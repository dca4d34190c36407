#include "apps/opnimp/audit/account.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>
#include <utility>

#include "apps/opnimp/audit/expected_calls.h"
#include "base/errors.h"

namespace velk {

namespace {

constexpr std::size_t mostDifferencesKept = 20;

// Where the amounts stand among the parameters of notes and entries.
constexpr std::size_t billParameter = 3;
constexpr std::size_t balanceParameter = 4;
constexpr std::size_t entryParameter = 1;

double numberAt(const RecordedCall& call, std::size_t parameter) {
  if (parameter >= call.parameters.size()) return 0;
  const double* number = std::get_if<double>(&call.parameters[parameter]);
  return number == nullptr ? 0 : *number;
}

void addTo(Sums& sums, double sign, double bill, double balance) {
  ++sums.count;
  if (sign > 0) {
    sums.billDebit += std::abs(bill);
    sums.balanceDebit += std::abs(balance);
  } else if (sign < 0) {
    sums.billCredit += std::abs(bill);
    sums.balanceCredit += std::abs(balance);
  }
}

class Bookkeeper {
 public:
  explicit Bookkeeper(const AccountBasis& basis)
      : basis_(basis), width_(mappedWidth(basis.mapping)) {}

  Account drawUp() {
    account_.fileRecords = basis_.input.count();
    account_.screenRecords = basis_.screenRecords;
    for (std::size_t record = 0; record < basis_.input.count(); ++record) addRecord(record);
    checkCounts();
    checkStrays();
    return std::move(account_);
  }

 private:
  void differ(std::string text) {
    if (account_.differences.size() < mostDifferencesKept) {
      account_.differences.push_back(std::move(text));
    }
    ++account_.differenceCount;
  }

  void differAt(std::size_t record, const std::string& text) {
    differ("Record " + std::to_string(record + 1) + " (" + basis_.input.where(record) +
           "): " + text);
  }

  std::optional<ExpectedPosting> read(std::size_t record) const {
    const auto fields = basis_.input.fields(record, width_);
    try {
      return expectedPosting(basis_.kind, [&](std::size_t field) {
        return mappedCell(fields, basis_.mapping, field);
      });
    } catch (const RuntimeError&) {
      return std::nullopt;
    }
  }

  void addRecord(std::size_t record) {
    const RecordTrace& trace = basis_.traces.records[record];
    Sums& ofOutcome = account_.byOutcome[static_cast<std::size_t>(trace.outcome)];
    const std::optional<ExpectedPosting> posting = read(record);
    if (posting) {
      addTo(account_.file, posting->bill, posting->bill, posting->balance);
      addTo(ofOutcome, posting->bill, posting->bill, posting->balance);
    } else {
      ++account_.unreadable;
      ++account_.file.count;
      ++ofOutcome.count;
    }
    checkCalls(record, trace, posting ? posting->calls : std::vector<ExpectedCall>());
  }

  bool mustEndAfterFirst(const RecordTrace& trace) const {
    const auto first = std::ranges::find(trace.calls, CallKind::Procedure, &RecordedCall::kind);
    return basis_.kind.stopsAtFailure && first != trace.calls.end() &&
           (*first)->result == CallResult::Failed;
  }

  bool mayEndAfter(std::size_t made, const RecordTrace& trace) const {
    if (trace.runEndedHere) return true;
    return made == 1 && mustEndAfterFirst(trace);
  }

  void checkCalls(std::size_t record, const RecordTrace& trace,
                  const std::vector<ExpectedCall>& expected) {
    const std::size_t made = trace.procedureCalls();
    if (made == 0) {
      if (trace.outcome == Outcome::Skipped && !expected.empty()) {
        differAt(record, "no procedure was called for it, and nothing says why");
      }
      return;
    }
    if (expected.empty()) {
      return differAt(record, "it has no amount to post, but procedures were called for it");
    }
    const bool tooMany = made > expected.size() || (made > 1 && mustEndAfterFirst(trace));
    if (tooMany || (made < expected.size() && !mayEndAfter(made, trace))) {
      differAt(record, std::to_string(made) + " procedure calls instead of " +
                           std::to_string(expected.size()));
    }
    std::size_t position = 0;
    for (const RecordedCall* call : trace.calls) {
      if (call->kind != CallKind::Procedure) continue;
      if (position < expected.size()) checkCall(record, *call, expected[position]);
      ++position;
      addEffect(*call, call->text == expected.back().procedure);
    }
  }

  void checkCall(std::size_t record, const RecordedCall& call, const ExpectedCall& expected) {
    if (call.text != expected.procedure) {
      return differAt(
          record, call.text + " was called where " + std::string(expected.procedure) + " belongs");
    }
    for (const auto& [position, value] : expected.parameters) {
      if (position < call.parameters.size() && call.parameters[position] == value) continue;
      const std::string given =
          position < call.parameters.size() ? toText(call.parameters[position]) : "nothing";
      differAt(record, "the file says " + toText(value) + ", " + call.text + " was given " + given);
    }
  }

  /// `last`: it is the call that ends a record.
  void addEffect(const RecordedCall& call, bool last) {
    if (!isEffective(call)) return;
    Sums& sums = last ? account_.entries : account_.notes;
    if (basis_.kind.opening == nullptr) {
      ++sums.count;
    } else if (last) {
      const double entry = numberAt(call, entryParameter);
      addTo(sums, entry, 0, entry);
    } else {
      const double sign = call.text == basis_.kind.opening->debitNote ? 1 : -1;
      addTo(sums, sign, numberAt(call, billParameter), numberAt(call, balanceParameter));
    }
  }

  void checkCounts() {
    const auto file = static_cast<long long>(account_.fileRecords);
    if (account_.screenRecords && file != *account_.screenRecords) {
      differ("The file has " + std::to_string(file) + " records, the screen counted " +
             std::to_string(*account_.screenRecords));
    }
    const std::size_t sum =
        std::accumulate(account_.byOutcome.begin(), account_.byOutcome.end(), std::size_t{0},
                        [](std::size_t total, const Sums& sums) { return total + sums.count; });
    if (sum != account_.fileRecords) {
      differ("The outcomes come to " + std::to_string(sum) + " records of " + std::to_string(file));
    }
    const std::size_t notReached = account_.count(Outcome::NotReached);
    if (basis_.completed && notReached != 0) {
      differ("The run ended by itself, but did not reach " + std::to_string(notReached) +
             " records");
    }
  }

  void checkStrays() {
    for (const RecordedCall* call : basis_.traces.strays) {
      differ(call->text + " was called for row " + std::to_string(call->row) +
             ", which is no record of the file");
    }
  }

  const AccountBasis& basis_;
  const std::size_t width_;  ///< of what is read of a record
  Account account_;
};

}  // namespace

Account drawUpAccount(const AccountBasis& basis) {
  return Bookkeeper(basis).drawUp();
}

}  // namespace velk
