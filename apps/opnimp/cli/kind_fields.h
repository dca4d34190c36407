// The columns of a file of each kind, as they are told to users.
#pragma once

#include <span>
#include <string_view>

#include "apps/opnimp/cli/kinds.h"

namespace velk {

enum class FieldForm { Text, Code, Date, Amount, Choice };

struct KindField {
  std::string_view title;  ///< that maps by itself
  FieldForm form = FieldForm::Text;
  bool mandatory = false;  ///< every record has to have a value
  std::string_view what;   ///< what it may be
  std::string_view example;
};

/// In the order of the kind's file.
std::span<const KindField> fieldsOf(const ImportKind& kind);

/// Such as "code".
std::string_view formName(FieldForm form);

}  // namespace velk
