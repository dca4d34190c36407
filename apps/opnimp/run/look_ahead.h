// Look-ups of records before their turn: many in one message, on a connection of their own that
// changes nothing. A record whose look-up is answered so costs no round trip for it.
//
// An answer counts as long as the record's own look-up would get the same:
// - Only a look-up whose answer no posting of its import changes is asked ahead. A note and its
//   entry make no customer and no vendor, and remove none. What a salesman's look-ups ask is his DS
//   types, which saving him may change: they are asked in their turn. Banks and vendors ask
//   nothing.
// - It is asked for few records at a time, and used for these only.
// - Only "yes" counts. Where the answer is no, or there is none, the record asks for itself.
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "apps/opnimp/cli/kinds.h"
#include "mapping/import_screen.h"
#include "platform/database.h"

namespace velk {

/// The second connection of a call.
struct Beside {
  std::shared_ptr<OwnConnection> connection{};  ///< null: there is none
  std::string failure{};                        ///< why not, or why it is asked nothing any more

  bool isAsked() const { return connection != nullptr && failure.empty(); }
};

/// Of the records of one screen.
class LookAhead {
 public:
  /// Whether the look-ups of a kind may be asked before records before them are posted.
  static bool isFor(const ImportKind& kind) { return kind.opening != nullptr; }

  /// An error of the connection ends its use, for those who come later, too; a lock does not.
  LookAhead(Beside& beside, const ImportKind& kind) : beside_(beside), kind_(kind) {}
  LookAhead(const LookAhead&) = delete;
  LookAhead& operator=(const LookAhead&) = delete;

  /// Until then, and after null, nothing is answered.
  void follow(const ImportScreen* screen) { screen_ = screen; }
  /// The answer to a look-up of the record that the screen stands on; null if the record has to ask
  /// for itself.
  std::shared_ptr<Recordset> answer(std::string_view query);

 private:
  void ask(std::size_t firstRow);
  std::string queryOf(std::size_t row) const;

  Beside& beside_;
  const ImportKind& kind_;
  const ImportScreen* screen_ = nullptr;
  std::size_t endRow_ = 0;  // behind the last one that was asked for
  std::map<std::string, Value, std::less<>> answers_;
};

/// The connection, with what is answered ahead.
std::shared_ptr<Connection> answeredAhead(LookAhead& ahead, std::shared_ptr<Connection> connection);

}  // namespace velk
