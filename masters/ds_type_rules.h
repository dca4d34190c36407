// What a salesman's DS type (the category of a distributor's salesman) may be: the allowed values
// of the operational category group in force. Errors never leave these checks; they are logged.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "mapping/import_screen.h"

namespace velk {

/// A sub-select for the operational category group in force, which DSType_Master's OCGtype names.
inline constexpr std::string_view groupInForce =
    "(Select flag from tbl_velk_Configabstract where ScreenCode = 'OCGDS' and ScreenName "
    "='OperationalCategoryGroup')";

/// The look-up of a DS type: the value stands between these as it is, then follows the group.
inline constexpr std::string_view dsTypeQueryStart =
    "Select Active From DsType_Master Where DSTypeName = 'DSType' and DSTypeValue = '";
inline constexpr std::string_view dsTypeQueryEnd = "' and DSTypeCtlPos = 1 and OCGtype = ";

/// The look-up of a value, as the screens send it.
std::string dsTypeQuery(std::string_view value);

enum class DsTypeCheck : std::int16_t { Valid, NotFound, Inactive };

class DsTypeRules {
 public:
  explicit DsTypeRules(ImportScreen& screen) : screen_(screen) {}
  DsTypeRules(const DsTypeRules&) = delete;
  DsTypeRules& operator=(const DsTypeRules&) = delete;

  /// 0: the database has another caption for DS types than this system; also when the check failed.
  std::int16_t ChkForValidDSTypeName();
  /// Whether a salesman may keep the type that he has. True when the check failed, too: a database
  /// without that procedure must not keep salesmen from being imported.
  bool CheckForDefaultVal(std::string_view name, std::string_view existingValue);
  DsTypeCheck IsvalidateDSType(std::string_view value);
  /// Whether all characters are unaccented letters, digits, blanks or "&".
  static bool FilterAlphaNumeric(std::string_view text);

  /// Forgets what the last import has found.
  void reset();
  /// Of the last import: the salesmen whose type is no default value, each after a comma, every
  /// eleventh on a new line.
  const std::string& notDefaultList() const { return notDefaultList_; }
  std::int32_t notDefaultCount() const { return notDefaultCount_; }  ///< since the last new line
  bool notDefaultFound() const { return notDefaultFound_; }

 private:
  void noteNotDefault(std::string_view name);
  std::shared_ptr<Recordset> ask(std::string_view procedure, const Value& parameter);

  ImportScreen& screen_;
  std::string notDefaultList_;
  std::int32_t notDefaultCount_ = 0;
  bool notDefaultFound_ = false;
};

}  // namespace velk
