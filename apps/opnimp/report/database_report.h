// What a check of the database has found.
#pragma once

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "apps/opnimp/cli/exit_status.h"
#include "platform/database.h"

namespace velk {

struct LookUpCheck {
  std::string text;
  std::string error;  ///< empty: it was answered
};

struct ProcedureCheck {
  std::string name;
  std::size_t passed = 0;  ///< how many parameters an import gives it
  bool isRefused = false;  ///< it is missing, takes another number, or may not be run
  std::vector<CatalogueParameter> takes{};  ///< if that is told
  std::vector<std::string> unfit{};         ///< of these, those that cannot take what is passed

  bool canWork() const { return !isRefused && unfit.empty(); }
};

struct KindCheck {
  std::string kind;
  std::vector<LookUpCheck> lookUps;
  std::vector<ProcedureCheck> procedures;

  bool canWork() const;
};

struct DatabaseCheck {
  std::string database;  ///< without passwords
  DatabaseFacts facts;
  std::string firstDate;     ///< of transactions; empty: not known
  std::string earliestDate;  ///< that a document can have; empty: any
  std::vector<KindCheck> kinds;

  /// Refused where a kind cannot work, RecordsLeft where there are rights too many.
  ExitStatus status() const;
};

void writeCheckText(const DatabaseCheck& check, std::ostream& out);
void writeCheckJson(const DatabaseCheck& check, std::ostream& out);

}  // namespace velk
