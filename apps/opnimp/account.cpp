#include "apps/opnimp/account.h"

#include <cmath>
#include <numeric>
#include <optional>
#include <utility>

#include "apps/opnimp/printable.h"
#include "platform/errors.h"
#include "platform/numbers.h"

namespace velk {

namespace {

constexpr std::size_t mostDifferencesKept = 20;

// Where the values stand among a procedure's parameters.
constexpr std::size_t codeParameter = 0;
constexpr std::size_t billParameter = 3;
constexpr std::size_t balanceParameter = 4;
constexpr std::size_t entryParameter = 1;

/// A record as its bytes say.
struct Reading {
  std::string code;
  double bill = 0;
  double balance = 0;
};

/// A call that the import has to make for a record.
struct Expected {
  std::string_view procedure;
  std::vector<std::pair<std::size_t, Value>> parameters;
};

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
    differ("Record " + std::to_string(record + 1) + " (line " +
           std::to_string(basis_.input.place(record).line) + "): " + text);
  }

  std::optional<Reading> read(std::size_t record) const {
    const auto fields = basis_.input.fields(record, QuotedComma::Drop, width_);
    const auto cell = [&](std::size_t field) { return mappedCell(fields, basis_.mapping, field); };
    const KindFields& at = basis_.kind.fields;
    try {
      return Reading{cell(at.code), leadingNumber(cell(at.bill)), leadingNumber(cell(at.balance))};
    } catch (const RuntimeError&) {
      return std::nullopt;
    }
  }

  void addRecord(std::size_t record) {
    const RecordTrace& trace = basis_.traces.records[record];
    Sums& ofOutcome = account_.byOutcome[static_cast<std::size_t>(trace.outcome)];
    const std::optional<Reading> reading = read(record);
    if (reading) {
      addTo(account_.file, reading->bill, reading->bill, reading->balance);
      addTo(ofOutcome, reading->bill, reading->bill, reading->balance);
    } else {
      ++account_.unreadable;
      ++account_.file.count;
      ++ofOutcome.count;
    }
    checkCalls(record, trace, reading);
  }

  std::vector<Expected> expectedCalls(const Reading& reading) const {
    const OpeningImportKind& opening = *basis_.kind.opening;
    const bool debit = reading.bill > 0;
    const double balance = std::abs(reading.balance);
    return {{debit ? opening.debitNote : opening.creditNote,
             {{codeParameter, reading.code},
              {billParameter, std::abs(reading.bill)},
              {balanceParameter, balance}}},
            {opening.openingBalance,
             {{codeParameter, reading.code}, {entryParameter, debit ? balance : -balance}}}};
  }

  void checkCalls(std::size_t record, const RecordTrace& trace,
                  const std::optional<Reading>& reading) {
    const std::size_t made = trace.procedureCalls();
    if (made == 0) return;
    if (!reading || reading->bill == 0) {
      return differAt(record, "it has no amount to post, but procedures were called for it");
    }
    const std::vector<Expected> expected = expectedCalls(*reading);
    if (made > expected.size() || (made < expected.size() && !trace.runEndedHere)) {
      differAt(record, std::to_string(made) + " procedure calls instead of " +
                           std::to_string(expected.size()));
    }
    std::size_t position = 0;
    for (const RecordedCall* call : trace.calls) {
      if (call->kind != CallKind::Procedure) continue;
      if (position < expected.size()) checkCall(record, *call, expected[position]);
      ++position;
      addEffect(*call);
    }
  }

  void checkCall(std::size_t record, const RecordedCall& call, const Expected& expected) {
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

  void addEffect(const RecordedCall& call) {
    if (!isEffective(call)) return;
    const OpeningImportKind& opening = *basis_.kind.opening;
    if (call.text == opening.openingBalance) {
      const double entry = numberAt(call, entryParameter);
      addTo(account_.entries, entry, 0, entry);
    } else {
      const double sign = call.text == opening.debitNote ? 1 : -1;
      addTo(account_.notes, sign, numberAt(call, billParameter), numberAt(call, balanceParameter));
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
