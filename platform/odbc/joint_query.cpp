#include "platform/odbc/joint_query.h"

#include <algorithm>
#include <iterator>

#include "platform/odbc/statement_shape.h"

namespace velk {
namespace {

void add(std::string& sql, std::string_view query) {
  sql.append(sql.empty() ? "select (" : ", (").append(query).append(")");
}

}  // namespace

JointQuery jointQuery(const Dialect& dialect, std::span<const std::string> queries) {
  JointQuery joint;
  for (const std::string& query : queries) {
    auto shape = shapeOf(query);
    const KnownStatement* const known = shape ? findStatement(dialect, shape->text) : nullptr;
    if (known == nullptr) {
      joint = {{}, {}, false};
      for (const std::string& text : queries) add(joint.sql, text);
      return joint;
    }
    add(joint.sql, known->sql);
    std::ranges::move(shape->literals, std::back_inserter(joint.literals));
  }
  return joint;
}

}  // namespace velk
