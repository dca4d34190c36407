// What the journal says of a run: how it began, what became of each record, and how it ended.
// docs/journal.md has the order of the values.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "apps/opnimp/audit/outcome.h"
#include "apps/opnimp/convert/assumption.h"
#include "apps/opnimp/journal/entry_bytes.h"
#include "apps/opnimp/journal/sha256.h"
#include "apps/opnimp/records/field_mapping.h"

namespace velk {

/// A record of the file as the journal knows it.
struct JournaledRecord {
  std::size_t line = 0;  ///< or row, as RecordPlace has it
  Digest hash{};         ///< of what is posted of it (record_hash.h)
};

struct RunStart {
  std::uint64_t number = 0;  ///< of the run, from 1
  Date time;
  std::string user;
  std::string version;       ///< of the program
  std::string machineStart;  ///< see native_state.h
  std::string kind;
  std::string folder;  ///< from which it ran: relative paths begin there
  std::string file;    ///< as the user named it
  Digest fileHash{};
  std::string database;    ///< as shown: without passwords
  std::string databaseId;  ///< the same for the same database, however it is named
  std::string errorLog;
  std::vector<std::string> accepted;  ///< codes of harmful warnings
  std::vector<FieldMapping> mapping;
  bool oneTransaction = false;           ///< nothing stays posted if it breaks off
  std::uint64_t resumes = 0;             ///< the run that it goes on with; 0: none
  std::size_t firstRecord = 0;           ///< of the file; those before it are none of this run
  std::vector<std::size_t> setApart;     ///< records before it that were left in doubt
  std::vector<JournaledRecord> records;  ///< of the file from firstRecord on
  std::vector<Assumption> assumed;       ///< of a file that was converted
  std::optional<Date> undated;  ///< what a record without a date was posted with; empty: not asked
  /// By an earlier version, which hashed what was written (record_hash.h), and did not say when a
  /// transaction was about to be kept.
  bool isEarly = false;
};

struct RecordEnd {
  std::size_t record = 0;  ///< of the run, from 0
  Outcome outcome = Outcome::NotReached;
  RecordReport said;
  std::vector<RecordedCall> calls;
  std::vector<RecordedLine> lines;
  std::vector<RecordedMessage> messages;
};

/// The run lost its server and went on at another one.
struct HostChange {
  std::size_t record = 0;  ///< the record to go on with, from 1
  std::string from;        ///< without passwords, as `to`
  std::string to;
  std::string why;    ///< the first one was lost
  std::string found;  ///< at the second one; empty: nothing was in doubt
};

struct RunEnd {
  Date time;
  bool completed = false;                  ///< the import itself said so
  std::optional<long long> screenRecords;  ///< as the screens counted them
  Changes changes = Changes::Stand;        ///< of all calls that post
  std::string refusal;                     ///< why nothing was imported
  std::string brokeOff;
  /// Records whose outcome is not, or not any more, what was said when they ended.
  std::vector<std::pair<std::size_t, Outcome>> revised;
  std::vector<RecordedCall> strays;
  std::vector<RecordedLine> lines;  ///< of the run as a whole
  std::vector<RecordedMessage> messages;
};

/// What stands before the bytes of the file that is imported, so many, and behind them.
void writeBeforeFile(EntryWriter& to, const RunStart& run, std::size_t fileBytes);
void writeBehindFile(EntryWriter& to, const RunStart& run);
void write(EntryWriter& to, const HostChange& change);
void write(EntryWriter& to, const RunEnd& run);

/// The same as a RecordEnd, without copies.
void writeRecordEnd(EntryWriter& to, std::size_t record, const RecordTrace& trace);

/// The file's bytes follow, as a text.
RunStart readRunStart(EntryReader& from);
/// What stands behind the file's bytes.
void readBehindFile(EntryReader& from, RunStart& run);
RecordEnd readRecordEnd(EntryReader from);
HostChange readHostChange(EntryReader from);
RunEnd readRunEnd(EntryReader from);
/// Only the record and its outcome.
std::pair<std::size_t, Outcome> readRecordOutcome(EntryReader& from);

}  // namespace velk
