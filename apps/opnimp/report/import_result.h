// What an import came to.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "apps/opnimp/audit/account.h"
#include "apps/opnimp/audit/call_figures.h"
#include "apps/opnimp/audit/outcome.h"
#include "apps/opnimp/cli/arguments.h"
#include "apps/opnimp/cli/exit_status.h"
#include "apps/opnimp/journal/resumption.h"
#include "apps/opnimp/records/field_mapping.h"
#include "apps/opnimp/records/input_records.h"
#include "apps/opnimp/records/title_suggestions.h"
#include "apps/opnimp/warnings/warnings.h"
#include "base/dates.h"

namespace velk {

struct ImportResult {
  Arguments arguments;
  std::string database;  ///< without passwords
  std::unique_ptr<const InputRecords> input;
  std::vector<FieldMapping> mapping;  ///< empty when the file could not be viewed
  std::vector<Warning> warnings;
  Traces traces;
  Account account;                          ///< empty when the run was refused
  std::string refusal;                      ///< why nothing was imported; empty: it was not refused
  std::vector<std::string> commands;        ///< ready ones that may mend that
  bool repeats = false;                     ///< it was refused for what is posted twice
  bool refusedWithAnother = false;          ///< and not for what the file itself is
  std::vector<std::string> allowedDsTypes;  ///< looked up when a salesman was rejected
  std::vector<HostChange> hostChanges;
  std::size_t repeatedCalls = 0;  ///< that had met another session's change and were taken back
  std::string brokeOff;           ///< why the run ended early; empty: it did not
  std::string noLookAhead;        ///< why its look-ups were not asked ahead; empty: they
                                  ///< were, or were not to be
  bool connectionLost = false;    ///< that is why
  std::string errorLog;           ///< path of the error log's file
  std::string journal;            ///< its path; empty: the run is not in one
  std::uint64_t run = 0;          ///< its number there
  std::uint64_t resumes = 0;      ///< the run that it goes on with; 0: none
  /// The server that this one posted to was replaced, or started anew, and may have lost some of
  /// it.
  bool serverReplaced = false;
  bool passedOver = false;                   ///< that run had reached all: there is none of its own
  std::vector<std::size_t> setApart;         ///< records before its own that were left in doubt
  std::size_t leftOut = 0;                   ///< first records that those runs did not reach either
  std::vector<RefusedBefore> refusedBefore;  ///< by the runs that it goes on with
  std::vector<std::string> rejectFiles;      ///< paths written
  std::string metricsFile;                   ///< path written, if it was; of the last file
  std::string rejectsError;                  ///< why they could not be written
  std::string reportFile;                    ///< path of the page written, if one was
  std::string reportError;                   ///< why it could not be written
  std::string profileError;                  ///< why the profile could not be saved
  std::string user;                          ///< who ran it
  std::string folder;                        ///< from which it ran: relative paths begin there
  std::string fileHash;                      ///< SHA-256, in hexadecimal digits
  Date began;                                ///< local time
  Date ended;
  CallFigures calls;
  std::size_t lockWaits = 0;  ///< that were told of while it ran
  double seconds = 0;         ///< from the first record to the account

  bool refused() const { return !refusal.empty(); }
  /// Whether there is an account of it: a file that was refused, or never looked at, has none.
  bool hasAccount() const {
    return !refused() && !passedOver && account.fileRecords == input->count();
  }
  bool isDryRun() const { return arguments.dryRun; }
  ExitStatus status() const;
};

/// Of its columns those that look like fields to which none is mapped.
std::vector<TitleSuggestion> suggestionsFor(const ImportResult& result);
/// Such as: "Cust ID" looks like Customer ID (the same words, shortened): --map "Customer
/// ID=Cust ID".
std::string sentenceOf(const TitleSuggestion& suggestion);

/// Where the runs began that it goes on with: " from line 4 on"; empty for the first record.
std::string fromText(const ImportResult& result);
/// Such as "with record 9 at Driver=...;Server=db2, since the connection was lost".
std::string goingOnText(const HostChange& change);
/// The outcome's name; of what is posted in a dry run, that it would be.
std::string nameOf(Outcome outcome, const Arguments& arguments);
/// What the calls of records have made, such as "Notes posted".
std::string effectName(std::string_view becomes, const Arguments& arguments);

/// How many records the run is of, and of which part of the file.
std::string recordsText(const InputRecords& input);

/// What the user should do now, a sentence each; never empty.
std::vector<std::string> nextSteps(const ImportResult& result);

}  // namespace velk
