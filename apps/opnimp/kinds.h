// The kinds of file that can be imported: one row each.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string_view>

#include "component/Velk_ClsOpnImp.h"
#include "opening/opening_import.h"

namespace velk {

/// Where a kind's values stand among the fields of its mapping list.
struct KindFields {
  std::size_t code;
  std::size_t date;
  std::size_t bill;
  std::size_t balance;
};

struct ImportKind {
  std::string_view name;  ///< on the command line
  std::string_view what;  ///< for the help
  /// The component's entry point that opens the screen.
  void (Velk_ClsOpnImp::*open)(const std::shared_ptr<Connection>&,
                               const std::shared_ptr<const Picture>&);
  const OpeningImportKind* opening;  ///< its procedures
  KindFields fields;
  std::span<const std::size_t> mandatory;  ///< fields without which nothing is imported
  std::size_t largestRecordCount;          ///< that can be imported in one go
};

std::span<const ImportKind> importKinds();
/// Null when there is none of that name.
const ImportKind* findKind(std::string_view name);

}  // namespace velk
