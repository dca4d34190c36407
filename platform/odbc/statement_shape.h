// What is constant in a statement and what was pasted into it.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velk {

/// A statement's text with "?" for each literal ('...', or N'...' whose N stays), and the values of
/// the literals in their order. Statements that differ by pasted values only have the same text.
struct StatementShape {
  std::string text;
  std::vector<std::string> literals;
};

/// Empty if the last quotation is not closed, or if there is a "?" outside the literals, which
/// could be mistaken for one.
std::optional<StatementShape> shapeOf(std::string_view statement);

}  // namespace velk
