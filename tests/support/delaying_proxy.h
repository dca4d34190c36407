// A network between a client and a server of the loopback address: it delays, counts, and loses
// answers.
#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace velk {

class DelayingProxy {
 public:
  /// Between whoever connects to it and the server that the connection string names.
  explicit DelayingProxy(const std::string& connectionString, std::chrono::microseconds delay = {});
  ~DelayingProxy();
  DelayingProxy(const DelayingProxy&) = delete;
  DelayingProxy& operator=(const DelayingProxy&) = delete;

  /// The connection string that leads through it.
  const std::string& connectionString() const { return connectionString_; }
  /// How often a client of it has sent something and waited for the answer.
  int roundTrips() const { return roundTrips_; }
  /// Asked at each round trip, which has its number from 1: true loses the answer when the server
  /// has sent it, and the connection with it. Set before anybody connects.
  std::function<bool(int roundTrip)> losesAnswer;

 private:
  void accept();
  void relay(int client);
  bool passOn(int from, int to, int roundTrip);

  const std::chrono::microseconds delay_;
  std::string connectionString_;
  int serverPort_ = 0;
  int listener_ = -1;
  std::atomic<int> roundTrips_ = 0;
  std::atomic<bool> ends_ = false;
  std::vector<std::thread> relays_;
  std::thread acceptor_;
};

}  // namespace velk
