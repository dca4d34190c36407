// The properties that forms and controls have.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace velk {

enum class Property : std::uint8_t {
  Name,
  Caption,
  Text,
  CheckValue,  ///< named "Value"
  Enabled,
  Visible,
  Left,
  Top,
  Width,
  Height,
  BackColor,
  ForeColor,
  CalendarBackColor,
  CalendarForeColor,
  FontName,
  FontSize,
  FontBold,
  Tag,
  ToolTipText,
  ListIndex,
  ScrollLeft,
  DialogTitle,
  Filter,
  FilterIndex,
  InitDir,
  FileName,
  CancelError,
  WindowState,
  hWnd,
  // Only observers hear of these; no set of properties contains them.
  Icon,
  Columns,
  Rows,
  ChosenColumn,
  TabOrder,
  Focus,
};

/// For those who know a property only by its name, which is found in any letter case.
std::optional<Property> propertyNamed(std::string_view name);

/// True for one that is either true or false.
bool isFlag(Property property);

}  // namespace velk
