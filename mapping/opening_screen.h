// The screen of an opening balance import, customers' or vendors'.
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string_view>

#include "mapping/import_screen.h"

namespace velk {

class OpeningScreen;

/// What one opening screen is, beside what both are.
struct OpeningScreenKind {
  std::string_view name;
  std::string_view caption;
  std::string_view mappingListName;
  std::span<const TargetField> fields;
  MappingRules rules;
  /// The second field's title is the host's caption of this key; empty: its own title stays.
  std::string_view secondTitleKey;
  /// A field that is present with width 0.
  std::optional<std::size_t> hiddenField;
};

/// What the Import button does on a viewed and mapped screen. The imports of opening/ are such, and
/// component/ gives each screen the one of its kind.
class ImportButton {
 public:
  virtual ~ImportButton() = default;
  virtual void click(OpeningScreen& screen) = 0;
};

class OpeningScreen : public ImportScreen {
 public:
  /// `kind` outlives the screen.
  OpeningScreen(Velk_ModOpnImp& module, const OpeningScreenKind& kind,
                std::unique_ptr<ImportButton> import);

 protected:
  void setUp(std::shared_ptr<Connection> myConn) override;
  void setUpDialog() override;
  void cmdImport_Click() override { import_->click(*this); }

 private:
  const OpeningScreenKind& kind_;
  std::unique_ptr<ImportButton> import_;
};

// The fields that both opening screens have, after code and name.
inline constexpr TargetField referenceField{"Reference", 1500, "reference", false};
inline constexpr TargetField dateField{"Date", 1300, "date", false};
inline constexpr TargetField billField{"Bill Amount", 1500, "bill amount", true};
inline constexpr TargetField balanceField{"Balance", 1500, "balance", true};

/// Rules that both opening screens share, with the refusals that they word differently.
constexpr MappingRules openingRules(std::string_view selectFirst, std::string_view hasEmptyValue) {
  return {.selectFirst = selectFirst,
          .hasEmptyValue = hasEmptyValue,
          .translatesTitles = true,
          .firstCell = {.afterBrowse = false, .afterAutomaticMapping = false},
          .furtherCellSuffix = "",
          .largestRecordCount = std::numeric_limits<std::int16_t>::max(),
          .countsLines = true,
          .repeatsPosting = true};
}

}  // namespace velk
