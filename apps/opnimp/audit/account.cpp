#include "apps/opnimp/audit/account.h"

#include <algorithm>
#include <numeric>
#include <tuple>

#include "apps/opnimp/cli/printable.h"
#include "base/text.h"

namespace velk {

namespace {

// One fault may show in every record: the first ones tell what it is, the rest is only counted.
constexpr std::size_t mostDifferencesKept = 20;

// The places of the amounts among the parameters of notes and entries.
constexpr std::size_t billParameter = 3;
constexpr std::size_t balanceParameter = 4;
constexpr std::size_t entryParameter = 1;

// A call with a missing or wrong parameter counts as 0 and so appears as a difference.
double numberAt(const RecordedCall& call, std::size_t parameter) {
  if (parameter >= call.parameters.size()) return 0;
  const double* number = std::get_if<double>(&call.parameters[parameter]);
  return number == nullptr ? 0 : *number;
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
    // The count goes on after the last text that is kept.
    if (account_.differences.size() < mostDifferencesKept) {
      account_.differences.push_back(std::move(text));
    }
    ++account_.differenceCount;
  }

  void differAt(std::size_t record, const std::string& text) {
    differ("Record " + std::to_string(record + 1) + " (" + basis_.input.where(record) +
           "): " + text);
  }

  void addRecord(std::size_t record) {
    const RecordTrace& trace = basis_.traces.records[record];
    Sums& ofOutcome = account_.byOutcome[static_cast<std::size_t>(trace.outcome)];
    const std::optional<FileAmounts> file =
        amountsOf(basis_.kind, basis_.input, basis_.mapping, record, width_);
    if (!file) ++account_.unreadable;
    // Counted even then, so that the counts agree, although there is no amount to add.
    const FileAmounts amounts = file.value_or(FileAmounts{});
    for (Sums* sums : {&account_.file, &ofOutcome}) {
      addTo(*sums, amounts.bill, amounts.bill, amounts.balance);
    }
    checkWord(record, trace);
    if (isSkipped(trace.outcome) && (!file || file->bill != 0)) {
      differAt(record, "the import skipped it, although the file has an amount");
    }
    addEffects(record, trace, amounts);
    checkTotals(record);
  }

  /// Holds what the import said of a record against what the recorder saw.
  void checkWord(std::size_t record, const RecordTrace& trace) {
    using Fate = RecordReport::Fate;
    const RecordReport& said = *trace.said;
    const Tally seen = tally(trace);
    const bool refused = said.fate == Fate::Refused || said.fate == Fate::Skipped;
    if ((refused || said.fate == Fate::NotBegun) && seen.made() > 0) {
      differAt(record, "the import did not post it, but called procedures for it");
    }
    // In a run that broke off, the last record may rightly have no end.
    if (said.fate == Fate::Begun && basis_.completed) {
      differAt(record, "the import began it and never said what became of it");
    }
    if (said.fate != Fate::Posted) return;
    const Posting recorded{seen.made(), seen.raised()};
    if (recorded != said.posting) {
      differAt(record, "the import says that it called " + callsText(said.posting) +
                           ", the recorder saw " + callsText(recorded));
    }
    // In such a kind the second call is rightly missing when the first one has failed.
    const bool endedEarly = basis_.kind.stopsAtFailure && seen.made() == 1 && seen.raised() == 1;
    if (seen.made() != basis_.kind.becomes.size() && !endedEarly) {
      differAt(record, callsText(recorded) + " were called where a record needs " +
                           std::to_string(basis_.kind.becomes.size()));
    }
  }

  static std::string callsText(const Posting& posting) {
    return std::to_string(posting.calls) + " procedures, " + std::to_string(posting.failed) +
           " of which failed";
  }

  /// The first call of a record makes its note, or its bank, vendor or salesman; the second its
  /// entry, or what belongs to those.
  void addEffects(std::size_t record, const RecordTrace& trace, const FileAmounts& file) {
    std::size_t position = 0;
    for (const RecordedCall* call : trace.calls) {
      if (call->kind != CallKind::Procedure) continue;
      const bool isNote = position++ == 0;
      if (basis_.kind.opening != nullptr) checkCall(record, *call, isNote, file);
      if (isEffective(*call)) addEffect(*call, isNote, file);
    }
  }

  /// An opening's document goes by the sign of its bill, and to the party that the file names.
  void checkCall(std::size_t record, const RecordedCall& call, bool isNote,
                 const FileAmounts& file) {
    const OpeningImportKind& opening = *basis_.kind.opening;
    const std::string_view note = file.bill > 0 ? opening.debitNote : opening.creditNote;
    const std::string_view expected = isNote ? note : opening.openingBalance;
    if (call.text != expected) {
      differAt(record, call.text + " was called where " + std::string(expected) + " belongs");
    }
    if (call.parameters.empty() || call.parameters[0] != Value(file.code)) {
      differAt(record, call.text + " was called for another code than the file's");
    }
  }

  void addEffect(const RecordedCall& call, bool isNote, const FileAmounts& file) {
    Sums& sums = isNote ? account_.notes : account_.entries;
    if (basis_.kind.opening == nullptr) {
      const bool again = isNote && basis_.kind.sharesFirst && !isNewKey(call);
      if (!again) ++sums.count;
      return;
    }
    // Only for calls that took effect, so that a failed call is no difference between the totals.
    addTo(isNote ? fileNotes_ : fileEntries_, file.bill, isNote ? file.bill : 0, file.balance);
    if (isNote) {
      addTo(sums, file.bill, numberAt(call, billParameter), numberAt(call, balanceParameter));
    } else {
      // An entry of 0 belongs to the side of its bill.
      const double entry = numberAt(call, entryParameter);
      addTo(sums, entry == 0 ? file.bill : entry, 0, entry);
    }
  }

  /// Whether no call before had the first parameter, a code, of this one.
  bool isNewKey(const RecordedCall& call) {
    return !call.parameters.empty() &&
           account_.keys.insert(lowerAscii(toText(call.parameters.front()))).second;
  }

  /// The totals so far, told once, at the record where they part. The same numbers are added up in
  /// the same order on both sides: there is no rounding between them.
  void checkTotals(std::size_t record) {
    if (basis_.kind.opening == nullptr || totalsDiffer_) return;
    for (const auto& [what, posted, file] :
         {std::tuple{"notes", &account_.notes, &fileNotes_},
          std::tuple{"entries", &account_.entries, &fileEntries_}}) {
      if (*posted == *file) continue;
      differAt(record, std::string("the ") + what + " posted so far come to " +
                           totalsText(*posted) + ", their records in the file to " +
                           totalsText(*file));
      totalsDiffer_ = true;
    }
  }

  static std::string totalsText(const Sums& sums) {
    return money(sums.billDebit) + " and " + money(sums.billCredit) + " billed, " +
           money(sums.balanceDebit) + " and " + money(sums.balanceCredit) + " open";
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
  Sums fileNotes_;    ///< of the records whose first call took effect
  Sums fileEntries_;  ///< of those whose second one did
  bool totalsDiffer_ = false;
};

}  // namespace

Account& Account::operator+=(const Account& more) {
  fileRecords += more.fileRecords;
  if (more.screenRecords) screenRecords = screenRecords.value_or(0) + *more.screenRecords;
  for (std::size_t i = 0; i < outcomeCount; ++i) byOutcome[i] += more.byOutcome[i];
  file += more.file;
  notes += more.notes;
  entries += more.entries;
  // What both files share was saved once.
  keys.insert(more.keys.begin(), more.keys.end());
  if (!keys.empty()) notes.count = keys.size();
  unreadable += more.unreadable;
  differenceCount += more.differenceCount;
  for (const std::string& difference : more.differences) {
    if (differences.size() < mostDifferencesKept) differences.push_back(difference);
  }
  return *this;
}

Account drawUpAccount(const AccountBasis& basis) {
  return Bookkeeper(basis).drawUp();
}

}  // namespace velk
