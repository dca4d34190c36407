#include "platform/odbc/statement_cache.h"

namespace velk {

PreparedStatement& StatementCache::get(std::string_view sql) {
  if (const auto found = byText_.find(sql); found != byText_.end()) {
    entries_.splice(entries_.begin(), entries_, found->second);
    return entries_.front().statement;
  }
  entries_.emplace_front(session_, sql);
  byText_.emplace(entries_.front().sql, entries_.begin());
  if (entries_.size() > capacity) {
    byText_.erase(entries_.back().sql);
    entries_.pop_back();
  }
  return entries_.front().statement;
}

}  // namespace velk
