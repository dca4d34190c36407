// The hosts of one database: the nodes of a cluster, or a server and its standby. A run works on
// one of them, and goes on at another when that one is lost.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "apps/opnimp/audit/run_gate.h"
#include "apps/opnimp/report/events.h"
#include "apps/opnimp/run/database_choice.h"

namespace velk {

class DatabaseHosts {
 public:
  /// At least one, in the order in which they are tried. What is referred to lives as long.
  DatabaseHosts(std::vector<DatabaseChoice> hosts, const Surroundings& surroundings, RunGate& gate);

  bool areSeveral() const { return hosts_.size() > 1; }
  /// The one that is worked on, or was last. While the run is within a call, another thread may ask
  /// for it.
  const DatabaseChoice& current() const { return hosts_[current_]; }
  const std::string& shown() const { return current().shown; }
  /// What another connection knows the run's by; empty if that is not known.
  const std::string& session() const { return session_; }

  /// Opens the first one that takes changes, an only one as it is. Raises CannotOpen, and RunEnded
  /// as openDatabase does.
  std::shared_ptr<OwnConnection> open();
  /// Looks at the others: they have to be the same database, as far as they answer. Tells of those
  /// that do not. Raises CannotOpen.
  void requireSame(std::string identity, Events& events);
  /// Opens the next one that takes changes, after the one that was lost; waits for one. Raises
  /// RunEnded when none is there in time.
  std::shared_ptr<OwnConnection> openNext();
  /// Whether the one that openNext opened has all that the one before it confirmed.
  bool hasAllConfirmed() const { return hasAllConfirmed_; }
  /// Whether nothing more can come of what was sent to the one before it. Waits for that.
  bool hasLostEnded() const { return hasLostEnded_; }

  /// A second connection to the host that is worked on, which changes nothing. Raises as open.
  std::shared_ptr<OwnConnection> openBeside();

  /// Ends the statements that are running; from another thread.
  void cancel();

 private:
  std::shared_ptr<OwnConnection> openHost(const DatabaseChoice& host);
  std::shared_ptr<OwnConnection> openReady(const DatabaseChoice& host);
  void use(const std::shared_ptr<OwnConnection>& opened);
  void awaitEnd(OwnConnection& opened);
  void look(const DatabaseChoice& host, Events& events);
  void pause() const;

  const std::vector<DatabaseChoice> hosts_;
  const Surroundings& surroundings_;
  RunGate& gate_;
  std::size_t current_ = 0;
  std::string identity_;  // empty until requireSame
  std::string history_;
  bool hasAllConfirmed_ = true;
  bool hasLostEnded_ = true;
  std::string place_;  // of the connection
  std::string session_;
  std::string lostSession_;
  std::shared_ptr<OwnConnection> connection_;
  std::shared_ptr<OwnConnection> beside_;
};

/// Opens the first one for a command that has no run: CannotOpen also where it is locked.
std::shared_ptr<OwnConnection> openUnlocked(DatabaseHosts& hosts);

}  // namespace velk
