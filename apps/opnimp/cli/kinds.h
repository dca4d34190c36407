// The kinds of file that can be imported: one row each.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <span>
#include <string_view>

#include "apps/opnimp/cli/kind_fields.h"
#include "component/Velk_ClsOpnImp.h"
#include "masters/Velk_frmBankBranch_OpnImp.h"
#include "opening/opening_kinds.h"

namespace velk {

/// Positions of an opening balance's values among the fields of its mapping list.
namespace openingField {
inline constexpr std::size_t code = 0;
inline constexpr std::size_t name = 1;
inline constexpr std::size_t reference = 2;
inline constexpr std::size_t date = 3;
inline constexpr std::size_t bill = 4;
inline constexpr std::size_t balance = 5;
}  // namespace openingField

using MasterType = Velk_frmBankBranch_OpnImp::Type;

enum class FileFormat { CommaSeparated, Workbook };

// The import adds 1 to the count, of 16 bits on the opening screens, of 32 on the master screen.
inline constexpr std::size_t openingLargestCount = 32766;
inline constexpr std::size_t masterLargestCount = std::numeric_limits<std::int32_t>::max() - 1;

struct ImportKind {
  std::string_view name;  ///< on the command line
  std::string_view what;  ///< for the help
  FileFormat format = FileFormat::CommaSeparated;
  /// The component's entry point that opens the screen.
  void (Velk_ClsOpnImp::*open)(const std::shared_ptr<Connection>&,
                               const std::shared_ptr<const Picture>&) =
      &Velk_ClsOpnImp::ImportBankBranchOpening;
  std::span<const FieldTitle> titles;      ///< of the fields, by their positions; of text only
  std::span<const std::size_t> mandatory;  ///< fields without which nothing is imported
  std::size_t largestRecordCount = masterLargestCount;  ///< that can be imported in one go
  std::array<std::string_view, 2> becomes;              ///< what the two calls of a record make
  const OpeningImportKind* opening = nullptr;  ///< its procedures; null: master data, no amounts
  std::optional<MasterType> type{};            ///< chosen on the screen
  std::size_t columns = 0;                     ///< that a text must have exactly; 0: any number
  /// The second call is left out when the first has failed.
  bool stopsAtFailure = false;
  /// Each record's first call saves what further records may name again, such as the bank of a
  /// branch.
  bool sharesFirst = false;
  /// A record that is posted again replaces itself, instead of being there twice.
  bool replaces = false;
};

/// The columns of its file, in their order; of a workbook, too.
inline std::span<const FieldTitle> columnsOf(const ImportKind& kind) {
  return kind.format == FileFormat::Workbook ? salesmanFileColumns : kind.titles;
}

std::span<const ImportKind> importKinds();
/// Null when there is none of that name.
const ImportKind* findKind(std::string_view name);

}  // namespace velk
