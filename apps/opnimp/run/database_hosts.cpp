#include "apps/opnimp/run/database_hosts.h"

#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>

#include "apps/opnimp/audit/run_ended.h"
#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/cli/printable.h"
#include "base/errors.h"

namespace velk {

namespace {

constexpr std::chrono::milliseconds betweenTries{200};
/// What drivers, all together, may need to find the words for it.
constexpr std::chrono::milliseconds longestWord{1000};
/// More than a cluster takes to give up a node.
constexpr std::chrono::seconds longestEnd{15};

/// It answers, and will not do now, or not at all.
[[noreturn]] void cannotUse(const DatabaseChoice& host, const std::string& why) {
  throw CannotOpen("the database " + host.shown + " cannot be used: " + why);
}

[[noreturn]] void isAnother(const DatabaseChoice& host) {
  cannotUse(host,
            "it is another database than the one before it, or cannot be told from it; "
            "several --database have to be the hosts of one database");
}

}  // namespace

DatabaseHosts::DatabaseHosts(std::vector<DatabaseChoice> hosts, const Surroundings& surroundings,
                             RunGate& gate)
    : hosts_(std::move(hosts)),
      surroundings_(surroundings),
      gate_(gate),
      beginning_(timeForAll()),
      silence_(hosts_.size()) {}

std::chrono::milliseconds OpeningTime::part() {
  const auto left = std::max(end_ - std::chrono::steady_clock::now(), {});
  return std::chrono::ceil<std::chrono::milliseconds>(left /
                                                      static_cast<long>(hosts_ > 1 ? hosts_-- : 1));
}

OpeningTime DatabaseHosts::timeForAll() const {
  return {std::chrono::seconds(hosts_.front().options.loginTimeoutSeconds), hosts_.size()};
}

std::shared_ptr<OwnConnection> DatabaseHosts::open() {
  std::string why;
  beginning_ = timeForAll();
  for (current_ = 0; current_ < hosts_.size(); ++current_) {
    try {
      auto opened = areSeveral() ? openReady(current_, beginning_) : openHost(hosts_[current_]);
      use(opened);
      return opened;
    } catch (const CannotOpen& failure) {
      why.append(why.empty() ? "" : "; ").append(failure.what());
    }
  }
  current_ = 0;
  throw CannotOpen(why);
}

void DatabaseHosts::requireSame(std::string identity, Events& events) {
  identity_ = std::move(identity);
  for (std::size_t host = 0; host < hosts_.size(); ++host) {
    if (host != current_) look(host, events);
  }
}

// One that is not ready answers mostly which database it is: a standby, say.
void DatabaseHosts::look(std::size_t host, Events& events) {
  std::string identity;
  try {
    if (!silence_[host].empty()) throw CannotOpen(silence_[host]);
    const auto opened = openHost(host, beginning_);
    gate_.pass([&] {
      const bool ready = opened->whyNotReady().empty();
      identity = opened->identity(false);
      if (!ready && identity.empty()) identity = identity_;
    });
  } catch (const CannotOpen& failure) {
    return events.notice(failure.what() + std::string("; the run goes on without it."));
  } catch (const RuntimeError& error) {
    cannotUse(hosts_[host], std::string(withoutEnd(error.description())));
  }
  if (identity_.empty() || identity != identity_) isAnother(hosts_[host]);
}

std::shared_ptr<OwnConnection> DatabaseHosts::openNext() {
  lostSession_ = std::exchange(session_, {});
  const auto end = std::chrono::steady_clock::now() + surroundings_.hostPatience;
  for (;;) {
    std::string why;
    OpeningTime time = timeForAll();
    for (std::size_t tried = 0; tried < hosts_.size(); ++tried) {
      current_ = (current_ + 1) % hosts_.size();
      try {
        auto opened = openReady(current_, time);
        awaitEnd(*opened);
        use(opened);
        return opened;
      } catch (const CannotOpen& failure) {
        why.append(why.empty() ? "" : "; ").append(failure.what());
      }
    }
    if (std::chrono::steady_clock::now() >= end) throw RunEnded{"no host was left: " + why};
    pause();
  }
}

std::shared_ptr<OwnConnection> DatabaseHosts::openHost(const DatabaseChoice& host) {
  gate_.requireOpen();
  return gate_.pass([&] { return openDatabase(host, surroundings_); }, RunGate::Limit::None);
}

std::shared_ptr<OwnConnection> DatabaseHosts::openHost(std::size_t host, OpeningTime& time) {
  DatabaseChoice choice = hosts_[host];
  const auto part = time.part();
  // To drivers 0 is for ever.
  const auto limit =
      std::max(std::chrono::ceil<std::chrono::seconds>(part), std::chrono::seconds{1});
  choice.options.loginTimeoutSeconds = static_cast<int>(limit.count());
  choice.patience = part + longestWord / hosts_.size();
  try {
    auto opened = openHost(choice);
    silence_[host].clear();
    return opened;
  } catch (const CannotOpen& failure) {
    silence_[host] = failure.what();
    throw;
  }
}

/// Raises CannotOpen for one that takes no changes, or is another database.
std::shared_ptr<OwnConnection> DatabaseHosts::openReady(std::size_t number, OpeningTime& time) {
  const DatabaseChoice& host = hosts_[number];
  auto opened = openHost(number, time);
  trapErrors(
      [&] {
        gate_.pass([&] {
          const std::string why = opened->whyNotReady();
          if (!why.empty()) cannotUse(host, why);
          if (!identity_.empty() && opened->identity(false) != identity_) isAnother(host);
        });
      },
      [&](const RuntimeError& error) {
        cannotUse(host, std::string(withoutEnd(error.description())));
      });
  return opened;
}

void DatabaseHosts::use(const std::shared_ptr<OwnConnection>& opened) {
  std::string history;
  trapErrors([&] { gate_.pass([&] { history = opened->history(); }); },
             [&](const RuntimeError& error) {
               if (!areSeveral()) return;
               cannotUse(hosts_[current_], std::string(withoutEnd(error.description())));
             });
  hasAllConfirmed_ = history == history_;
  history_ = std::move(history);
  connection_ = opened;
  std::string session;
  std::string place;
  const auto ask = [&] {
    session = opened->session();
    if (areSeveral()) place = opened->place();
  };
  // Without it, it stays unknown who keeps the run waiting, and whether it has ended.
  trapErrors([&] { gate_.pass(ask); }, [](const RuntimeError&) {});
  session_ = std::move(session);
  place_ = std::move(place);
}

// A server may go on with a statement whose connection is lost, and a cluster with the change of a
// node that it has not given up yet.
void DatabaseHosts::awaitEnd(OwnConnection& opened) {
  const auto end = std::chrono::steady_clock::now() +
                   std::min<std::chrono::seconds>(longestEnd, surroundings_.hostPatience);
  const auto ask = [&] {
    gate_.pass([&] { hasLostEnded_ = opened.hasEnded(lostSession_, place_); });
  };
  for (hasLostEnded_ = false;; pause()) {
    trapErrors(ask, [](const RuntimeError&) {});
    if (hasLostEnded_ || opened.isLost() || std::chrono::steady_clock::now() >= end) return;
  }
}

void DatabaseHosts::pause() const {
  if (surroundings_.interrupted && surroundings_.interrupted())
    throw RunEnded{"it was interrupted"};
  std::this_thread::sleep_for(betweenTries);
}

std::shared_ptr<OwnConnection> DatabaseHosts::openBeside() {
  DatabaseChoice host = current();
  host.options.readOnly = true;
  // The record waits that asks for itself then, once, and it can be told whom for.
  host.options.waitsForLocks = false;
  beside_ = nullptr;
  beside_ = openHost(host);
  return beside_;
}

void DatabaseHosts::cancel() {
  std::shared_ptr<OwnConnection> beside;
  std::shared_ptr<OwnConnection> connection;
  gate_.duringCall([&](auto /*began*/) {
    beside = beside_;
    connection = connection_;
  });
  if (beside) beside->cancel();
  if (connection) connection->cancel();
}

std::shared_ptr<OwnConnection> openUnlocked(DatabaseHosts& hosts) {
  try {
    return hosts.open();
  } catch (const RunEnded& ended) {
    throw CannotOpen(ended.why);
  }
}

}  // namespace velk
