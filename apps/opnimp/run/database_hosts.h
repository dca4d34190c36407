// The hosts of one database: the nodes of a cluster, or a server and its standby. A run works on
// one of them, and goes on at another when that one is lost.
#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "apps/opnimp/audit/run_gate.h"
#include "apps/opnimp/report/events.h"
#include "apps/opnimp/run/database_choice.h"

namespace velk {

/// The time that hosts have to answer, tried one after the other: an equal part each of what those
/// before it have left.
class OpeningTime {
 public:
  OpeningTime(std::chrono::seconds all, std::size_t hosts)
      : end_(std::chrono::steady_clock::now() + all), hosts_(hosts) {}

  /// Of the next one.
  std::chrono::milliseconds part();

 private:
  std::chrono::steady_clock::time_point end_;
  std::size_t hosts_;  // that are to come
};

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
  /// that do not, or did not when it was opened. Raises CannotOpen.
  void requireSame(std::string identity, Events& events);
  /// Opens the next one that takes changes, after the one that was lost; waits for one. Raises
  /// RunEnded when none is there in time.
  std::shared_ptr<OwnConnection> openNext();
  /// Whether the one that openNext opened has all that the one before it confirmed.
  bool hasAllConfirmed() const { return hasAllConfirmed_; }
  /// What its server answers another time only if it has lost nothing that it confirmed since;
  /// empty if that is not known, or never differs.
  const std::string& history() const { return history_; }
  /// Whether nothing more can come of what was sent to the one before it. Waits for that.
  bool hasLostEnded() const { return hasLostEnded_; }

  /// A second connection to the host that is worked on, which changes nothing. Raises as open.
  std::shared_ptr<OwnConnection> openBeside();

  /// Ends the statements that are running; from another thread.
  void cancel();

 private:
  OpeningTime timeForAll() const;
  std::shared_ptr<OwnConnection> openHost(const DatabaseChoice& host);
  std::shared_ptr<OwnConnection> openHost(std::size_t host, OpeningTime& time);
  std::shared_ptr<OwnConnection> openReady(std::size_t number, OpeningTime& time);
  void use(const std::shared_ptr<OwnConnection>& opened);
  void awaitEnd(OwnConnection& opened);
  void look(std::size_t host, Events& events);
  void pause() const;

  const std::vector<DatabaseChoice> hosts_;
  const Surroundings& surroundings_;
  RunGate& gate_;
  std::size_t current_ = 0;
  OpeningTime beginning_;             // of open and requireSame together
  std::vector<std::string> silence_;  // by host: why it could not be opened last; empty: it could
  std::string identity_;              // empty until requireSame
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
