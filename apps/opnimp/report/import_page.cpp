#include "apps/opnimp/report/import_page.h"

#include <algorithm>
#include <utility>

#include "apps/opnimp/cli/printable.h"
#include "apps/opnimp/cli/program_version.h"
#include "apps/opnimp/records/later_records.h"
#include "apps/opnimp/report/report_parts.h"
#include "base/dates.h"

namespace velk {

namespace {

Tone toneOf(Outcome outcome) {
  if (outcome == Outcome::Posted) return Tone::Good;
  if (isPosted(outcome)) return Tone::Noted;
  if (isRefused(outcome)) return Tone::Refused;
  if (isDoubtful(outcome)) return Tone::Doubtful;
  const bool untouched = outcome == Outcome::NotReached || outcome == Outcome::TakenBack;
  return untouched ? Tone::Untouched : Tone::Skipped;
}

Tone toneOf(const ImportResult& result) {
  switch (result.status()) {
    case ExitStatus::Posted:
      return Tone::Good;
    case ExitStatus::Refused:
      return Tone::Refused;
    default:
      return Tone::Doubtful;
  }
}

std::string verdict(const ImportResult& result) {
  if (result.refused()) return "Nothing was imported. The file was refused: " + result.refusal;
  std::size_t posted = 0;
  for (std::size_t i = 0; i < outcomeCount; ++i) {
    if (isPosted(static_cast<Outcome>(i))) posted += result.account.byOutcome[i].count;
  }
  std::string text = result.isDryRun() ? "A dry run: nothing was posted. " : "";
  if (!result.brokeOff.empty()) text += "The run broke off: " + result.brokeOff + ". ";
  text += grouped(posted) + " of " + counted(result.input->count(), "record", "records") +
          (result.isDryRun() ? " would be posted. " : " posted. ");
  return text + (result.account.addsUp() ? "The account adds up." : "The account does not add up.");
}

std::string joined(const std::vector<std::string>& texts) {
  std::string all;
  for (const std::string& text : texts) all.append(all.empty() ? "" : ", ").append(text);
  return all;
}

std::vector<HtmlReport::Fact> facts(const ImportResult& result) {
  std::vector<HtmlReport::Fact> facts{
      {"File", result.arguments.file},
      {"Records", asPart(*result.input) == nullptr ? "" : recordsText(*result.input)},
      {"SHA-256", result.fileHash},
      {"Database", result.database},
      {"Folder", result.folder},
      {"Began", formatIso(result.began)},
      {"Ended", result.ended == Date() ? "" : formatIso(result.ended)},
      {"Run", result.run == 0 ? "" : std::to_string(result.run)},
      {"Resumes", result.resumes == 0 ? "" : "run " + std::to_string(result.resumes)},
      {"Journal", result.journal},
      {"User", result.user},
      {"Program", "opnimp " + std::string(programVersion)},
      {"Accepted", joined(result.arguments.accept)},
      {"Error log", result.isDryRun() ? "not written in a dry run" : result.errorLog}};
  for (const HostChange& change : result.hostChanges) {
    facts.push_back({"Went on", goingOnText(change)});
  }
  if (!result.noLookAhead.empty()) {
    facts.push_back({"Look-ups", "each in its record's turn: " + result.noLookAhead});
  }
  facts.push_back({"Written", joined(result.rejectFiles)});
  if (!result.rejectsError.empty()) facts.push_back({"Rejects", result.rejectsError});
  std::erase_if(facts, [](const HtmlReport::Fact& fact) { return fact.value.empty(); });
  return facts;
}

void addAccount(const ImportResult& result, HtmlReport& page) {
  const Account& account = result.account;
  page.hasAmounts = result.arguments.kind->opening != nullptr;
  for (std::size_t i = 0; i < outcomeCount; ++i) {
    const auto outcome = static_cast<Outcome>(i);
    if (account.byOutcome[i].count == 0) continue;
    page.outcomes.push_back(
        {nameOf(outcome, result.arguments), toneOf(outcome), account.byOutcome[i], true});
  }
  page.file = account.file;
  const auto& becomes = result.arguments.kind->becomes;
  page.effects = {{effectName(becomes[0], result.arguments), {}, account.notes, true},
                  {effectName(becomes[1], result.arguments), {}, account.entries, false}};
  page.balance = account.addsUp() ? "The account adds up: what was posted, call by call, is what "
                                    "the file says of these records."
                                  : "The account does not add up:";
  if (account.unreadable > 0) page.differences.push_back(unreadableText(account));
  page.differences.insert(page.differences.end(), account.differences.begin(),
                          account.differences.end());
}

void addAttention(const ImportResult& result, HtmlReport& page) {
  const auto& records = result.traces.records;
  for (std::size_t record = 0; record < records.size(); ++record) {
    if (!needsAttention(records[record])) continue;
    page.attention.push_back({result.input->where(record),
                              nameOf(records[record].outcome, result.arguments),
                              reasonOf(records[record])});
  }
  for (const std::size_t row : result.input->unreadRows()) {
    page.attention.push_back(
        {"row " + std::to_string(row), "not read", "it is behind the first blank row"});
  }
}

/// How many records have no value for a field.
std::size_t countEmpty(const ImportResult& result, std::size_t field) {
  const std::size_t width = mappedWidth(result.mapping);
  std::size_t count = 0;
  for (std::size_t record = 0; record < result.input->count(); ++record) {
    const auto fields = result.input->fields(record, width);
    if (mappedCell(fields, result.mapping, field).empty()) ++count;
  }
  return count;
}

void addAssumed(const ImportResult& result, HtmlReport& page) {
  for (const Assumption& assumption : result.input->conversion().assumptions) {
    page.assumed.push_back({assumption.what, assumption.value, assumption.reason});
  }
  for (const Warning& warning : result.warnings) {
    page.assumed.push_back({placesOf(warning, result.input->placeWord()),
                            std::string(warning.code()), std::string(warning.text())});
  }
  if (result.arguments.kind->opening == nullptr || result.mapping.empty()) return;
  const std::size_t undated = countEmpty(result, openingField::date);
  page.assumed.push_back({"all dates", {}, "Dates are read day first: 03/04/2008 is 3 April."});
  if (undated == 0) return;
  page.assumed.push_back({counted(undated, "record", "records"),
                          {},
                          "Without a date: the day before the first transaction date."});
}

}  // namespace

HtmlReport importPage(const ImportResult& result) {
  HtmlReport page;
  page.title = "Import of " + std::string(result.arguments.kind->what);
  page.title.erase(std::min(page.title.find(';'), page.title.size()));
  page.verdict = verdict(result);
  page.tone = toneOf(result);
  page.facts = facts(result);
  page.next = nextSteps(result);
  addAssumed(result, page);
  for (const FieldMapping& entry : result.mapping) {
    page.mapping.push_back({entry.field, columnText(entry)});
  }
  if (result.refused()) return page;
  addAccount(result, page);
  addAttention(result, page);
  page.parties = partyTotals(*result.arguments.kind, *result.input, result.mapping, result.traces);
  return page;
}

}  // namespace velk
