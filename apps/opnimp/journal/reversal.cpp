#include "apps/opnimp/journal/reversal.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "apps/opnimp/cli/kinds.h"
#include "apps/opnimp/records/csv_records.h"
#include "base/errors.h"
#include "base/text.h"

namespace velk {

namespace {

// The fields of a document, in the order of the first parameters of its note.
constexpr std::array reversedFields{openingField::code, openingField::reference, openingField::date,
                                    openingField::bill, openingField::balance};
constexpr std::size_t firstAmount = 3;

using DocumentCells = std::array<std::string, reversedFields.size()>;

/// The shortest digits that read as the same number.
std::string digits(double amount) {
  std::array<char, 400> text{};  // more than the longest of all numbers has
  const auto end =
      std::to_chars(text.data(), text.data() + text.size(), amount, std::chars_format::fixed);
  return {text.data(), end.ptr};
}

std::string quoted(std::string text) {
  if (text.find('"') == std::string::npos) return text;
  for (std::size_t at = 0; (at = text.find('"', at)) != std::string::npos; at += 2) {
    text.insert(at, 1, '"');
  }
  return '"' + text + '"';
}

std::string lineOf(const DocumentCells& cells) {
  std::string line;
  for (const std::string& cell : cells) line.append(line.empty() ? "" : ",").append(quoted(cell));
  return CodePage::windows1252().encode(line).append(csvLineEnd);
}

/// The cells of the opposite document. The note carries its amounts without a sign.
DocumentCells opposite(const RecordedCall& note, std::string_view debitNote) {
  if (note.parameters.size() < reversedFields.size())
    throw RuntimeError(ErrorNumber::InvalidProcedureCall);
  DocumentCells cells;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    const Value& value = note.parameters[i];
    cells[i] = i < firstAmount ? toText(value) : digits(toDouble(value));
    // What was a debit becomes a credit.
    if (i >= firstAmount && note.text == debitNote) cells[i].insert(0, 1, '-');
  }
  return cells;
}

const RecordedCall& noteOf(const RecordTrace& trace) {
  return **std::ranges::find(trace.calls, CallKind::Procedure, &RecordedCall::kind);
}

/// Commas, for one, get lost when such a file is read.
void requireReadable(const std::string& text, const std::vector<DocumentCells>& documents) {
  const CsvRecords read(text);
  bool same = read.count() == documents.size();
  for (std::size_t i = 0; same && i < documents.size(); ++i) {
    same = std::ranges::equal(read.fields(i, reversedFields.size()), documents[i]);
  }
  if (!same) throw RuntimeError(ErrorNumber::InvalidProcedureCall);
}

}  // namespace

Reversal reverse(const Traces& traces, const std::vector<FieldMapping>& mapping,
                 std::string_view debitNote) {
  Reversal reversal;
  DocumentCells titles;
  std::ranges::transform(reversedFields, titles.begin(),
                         [&](std::size_t field) { return mapping.at(field).field; });
  reversal.text = lineOf(titles);
  std::vector<DocumentCells> documents;
  for (const RecordTrace& trace : traces.records) {
    if (isDoubtful(trace.outcome)) ++reversal.doubtful;
    if (!isPosted(trace.outcome)) continue;
    documents.push_back(opposite(noteOf(trace), debitNote));
    reversal.text += lineOf(documents.back());
  }
  reversal.count = documents.size();
  requireReadable(reversal.text, documents);
  return reversal;
}

}  // namespace velk
