#include "apps/opnimp/report/account_text.h"

#include <algorithm>
#include <string>
#include <vector>

#include "apps/opnimp/cli/printable.h"
#include "apps/opnimp/report/import_result.h"
#include "apps/opnimp/report/report_parts.h"

namespace velk {

namespace {

using TextRow = std::vector<std::string>;

TextRow rowOf(std::string_view name, const Sums& sums) {
  return {std::string(name),      grouped(sums.count),      money(sums.billDebit),
          money(sums.billCredit), money(sums.balanceDebit), money(sums.balanceCredit)};
}

std::vector<TextRow> rowsOf(const Account& account, const Arguments& arguments,
                            std::string_view file) {
  std::vector<TextRow> rows{
      {"", "Count", "Bill debit", "Bill credit", "Balance debit", "Balance credit"}};
  for (std::size_t i = 0; i < outcomeCount; ++i) {
    const Sums& sums = account.byOutcome[i];
    if (sums.count > 0) rows.push_back(rowOf(nameOf(static_cast<Outcome>(i), arguments), sums));
  }
  rows.push_back(rowOf(file, account.file));
  const auto& becomes = arguments.kind->becomes;
  rows.push_back(rowOf(effectName(becomes[0], arguments), account.notes));
  TextRow entries = rowOf(effectName(becomes[1], arguments), account.entries);
  entries[2] = entries[3] = "";  // account entries carry the balance only
  rows.push_back(entries);
  // Master data has counts, but no amounts.
  if (arguments.kind->opening == nullptr) {
    std::ranges::for_each(rows, [](TextRow& row) { row.resize(2); });
  }
  return rows;
}

}  // namespace

void writeAccount(const Account& account, const Arguments& arguments, std::string_view file,
                  std::ostream& out) {
  writeTable(rowsOf(account, arguments, file), 1, out);
  if (account.unreadable > 0) out << "  " << unreadableText(account) << '\n';
  if (account.addsUp()) {
    out << "  The account adds up.\n";
    return;
  }
  out << "  THE ACCOUNT DOES NOT ADD UP:\n";
  for (const std::string& difference : account.differences) {
    out << "  " << printable(difference) << '\n';
  }
  writeMore(account.differenceCount, account.differences.size(), out);
}

}  // namespace velk
