#include "platform/odbc/statement_shape.h"

namespace velk {
namespace {

/// Moves what follows an opening quotation mark from `rest` to `literal`; false if it never closes.
bool takeLiteral(std::string_view& rest, std::string& literal) {
  for (;;) {
    const std::size_t quote = rest.find('\'');
    if (quote == std::string_view::npos) return false;
    literal += rest.substr(0, quote);
    rest.remove_prefix(quote + 1);
    if (!rest.starts_with('\'')) return true;
    literal += '\'';  // a doubled quotation mark is one of the value's own
    rest.remove_prefix(1);
  }
}

}  // namespace

std::optional<StatementShape> shapeOf(std::string_view statement) {
  StatementShape shape;
  for (;;) {
    const std::size_t quote = statement.find('\'');
    const std::string_view around = statement.substr(0, quote);
    // A mark of the text's own could not be told from those that replace literals.
    if (around.find('?') != std::string_view::npos) return std::nullopt;
    shape.text += around;
    if (quote == std::string_view::npos) return shape;
    statement.remove_prefix(quote + 1);
    if (!takeLiteral(statement, shape.literals.emplace_back())) return std::nullopt;
    shape.text += '?';
  }
}

}  // namespace velk
