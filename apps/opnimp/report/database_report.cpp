#include "apps/opnimp/report/database_report.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "apps/opnimp/cli/printable.h"
#include "apps/opnimp/report/json_document.h"
#include "apps/opnimp/report/report_parts.h"

namespace velk {

namespace {

void writeFact(std::string_view name, const std::string& value, std::ostream& out) {
  if (!value.empty()) out << padRight(std::string(name), 24) << printable(value) << '\n';
}

/// "text, text, nvarchar(50)".
std::string takenText(const std::vector<CatalogueParameter>& parameters) {
  std::string text;
  for (const CatalogueParameter& parameter : parameters) {
    text.append(text.empty() ? "" : ", ").append(parameter.type);
    if (parameter.length > 0) text.append("(").append(std::to_string(parameter.length)).append(")");
  }
  return text;
}

void writeProcedure(const ProcedureCheck& procedure, std::ostream& out) {
  out << "  " << procedure.name;
  if (procedure.isRefused) {
    out << ": MISSING, or not with " << counted(procedure.passed, "parameter", "parameters")
        << ", or the user may not run it";
  } else if (!procedure.takes.empty()) {
    out << ": takes " << printable(takenText(procedure.takes));
  }
  out << '\n';
  for (const std::string& unfit : procedure.unfit) out << "    UNFIT: " << printable(unfit) << '\n';
}

void writeKind(const KindCheck& kind, std::ostream& out) {
  out << '\n' << kind.kind << (kind.canWork() ? ": can work\n" : ": CANNOT WORK\n");
  for (const LookUpCheck& lookUp : kind.lookUps) {
    if (lookUp.error.empty()) continue;
    out << "  " << lookUp.text << ": REFUSED: " << printable(lookUp.error) << '\n';
  }
  for (const ProcedureCheck& procedure : kind.procedures) writeProcedure(procedure, out);
}

void writeRights(const std::vector<std::string>& rights, std::ostream& out) {
  if (rights.empty()) return;
  constexpr std::size_t mostShown = 20;
  out << "\nThe user has rights that an import does not need, and that a text which becomes a "
         "statement would have, too:\n";
  const std::size_t shown = std::min(rights.size(), mostShown);
  for (std::size_t i = 0; i < shown; ++i) out << "  " << printable(rights[i]) << '\n';
  writeMore(rights.size(), shown, out);
}

Json procedureJson(const ProcedureCheck& procedure) {
  Json takes = Json::array();
  for (const CatalogueParameter& parameter : procedure.takes) {
    takes.push_back({{"name", orNull(parameter.name)},
                     {"type", orNull(parameter.type)},
                     {"length", parameter.length > 0 ? Json(parameter.length) : Json()}});
  }
  return {{"name", procedure.name},
          {"passed", procedure.passed},
          {"refused", procedure.isRefused},
          {"takes", std::move(takes)},
          {"unfit", procedure.unfit}};
}

Json kindJson(const KindCheck& kind) {
  Json lookUps = Json::array();
  for (const LookUpCheck& lookUp : kind.lookUps) {
    lookUps.push_back({{"text", lookUp.text}, {"error", orNull(lookUp.error)}});
  }
  Json procedures = Json::array();
  for (const ProcedureCheck& each : kind.procedures) procedures.push_back(procedureJson(each));
  return {{"kind", kind.kind},
          {"canWork", kind.canWork()},
          {"lookUps", std::move(lookUps)},
          {"procedures", std::move(procedures)}};
}

}  // namespace

bool KindCheck::canWork() const {
  return std::ranges::all_of(lookUps, [](const auto& each) { return each.error.empty(); }) &&
         std::ranges::all_of(procedures, &ProcedureCheck::canWork);
}

ExitStatus DatabaseCheck::status() const {
  if (!std::ranges::all_of(kinds, &KindCheck::canWork)) return ExitStatus::Refused;
  return facts.excessRights.empty() ? ExitStatus::Posted : ExitStatus::RecordsLeft;
}

void writeCheckText(const DatabaseCheck& check, std::ostream& out) {
  writeFact("Database", check.database, out);
  writeFact("Engine", check.facts.engine, out);
  writeFact("Texts", check.facts.encoding, out);
  writeFact("NOCOUNT", check.facts.noCount, out);
  writeFact("First transaction date",
            check.firstDate.empty() ? "none: balances cannot be imported" : check.firstDate, out);
  writeFact("Dates from", check.earliestDate, out);
  for (const KindCheck& kind : check.kinds) writeKind(kind, out);
  writeRights(check.facts.excessRights, out);
}

void writeCheckJson(const DatabaseCheck& check, std::ostream& out) {
  Json kinds = Json::array();
  for (const KindCheck& kind : check.kinds) kinds.push_back(kindJson(kind));
  out << textOf({{"command", "check-database"},
                 {"status", check.status()},
                 {"database", check.database},
                 {"engine", orNull(check.facts.engine)},
                 {"encoding", orNull(check.facts.encoding)},
                 {"noCount", orNull(check.facts.noCount)},
                 {"firstTransactionDate", orNull(check.firstDate)},
                 {"earliestDate", orNull(check.earliestDate)},
                 {"excessRights", check.facts.excessRights},
                 {"kinds", std::move(kinds)}})
      << '\n';
}

}  // namespace velk
