// The kinds of file that can be imported: one row each.
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string_view>

#include "component/Velk_ClsOpnImp.h"
#include "masters/Velk_frmBankBranch_OpnImp.h"
#include "opening/opening_kinds.h"

namespace velk {

/// Where the values of an opening balance stand among the fields of its mapping list.
namespace openingField {
inline constexpr std::size_t code = 0;
inline constexpr std::size_t reference = 2;
inline constexpr std::size_t date = 3;
inline constexpr std::size_t bill = 4;
inline constexpr std::size_t balance = 5;
}  // namespace openingField

using MasterType = Velk_frmBankBranch_OpnImp::Type;

enum class FileFormat { CommaSeparated, Workbook };

/// How the names of such files end, without the point.
constexpr std::string_view extensionOf(FileFormat format) {
  return format == FileFormat::Workbook ? "xls" : "csv";
}

struct ImportKind {
  std::string_view name;  ///< on the command line
  std::string_view what;  ///< for the help
  FileFormat format = FileFormat::CommaSeparated;
  /// The component's entry point that opens the screen.
  void (Velk_ClsOpnImp::*open)(const std::shared_ptr<Connection>&,
                               const std::shared_ptr<const Picture>&);
  std::span<const std::size_t> mandatory;   ///< fields without which nothing is imported
  std::size_t largestRecordCount;           ///< that can be imported in one go
  std::array<std::string_view, 2> becomes;  ///< what the two calls of a record make
  const OpeningImportKind* opening;         ///< its procedures; null: master data, without amounts
  std::optional<MasterType> type;           ///< chosen on the screen
  std::size_t columns;                      ///< that a text must have exactly; 0: any number
  /// The second call is left out when the first has failed.
  bool stopsAtFailure;
  /// A record that is posted again replaces itself, instead of standing there twice.
  bool replaces = false;
};

std::span<const ImportKind> importKinds();
/// Null when there is none of that name.
const ImportKind* findKind(std::string_view name);

}  // namespace velk
