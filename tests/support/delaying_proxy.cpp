#include "tests/support/delaying_proxy.h"

#include <arpa/inet.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <regex>
#include <stdexcept>

namespace velk {
namespace {

constexpr int glance = 20;  // milliseconds, how often its end is looked for

sockaddr_in loopback(int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

/// A socket that is told to one of the two calls; -1 if that fails.
template <class Call>
int openSocket(int port, Call call) {
  const int handle = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const sockaddr_in address = loopback(port);
  if (call(handle, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) return handle;
  ::close(handle);
  return -1;
}

void sendAtOnce(int handle) {
  const int on = 1;
  ::setsockopt(handle, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
}

}  // namespace

DelayingProxy::DelayingProxy(const std::string& connectionString, std::chrono::microseconds delay)
    : delay_(delay) {
  static const std::regex port("Port=(\\d+)");
  std::smatch found;
  if (!std::regex_search(connectionString, found, port)) throw std::runtime_error("no port");
  serverPort_ = std::stoi(found[1]);
  listener_ = openSocket(0, ::bind);
  sockaddr_in address{};
  socklen_t size = sizeof address;
  if (listener_ < 0 || ::listen(listener_, 16) != 0 ||
      ::getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
    throw std::runtime_error("the proxy cannot listen");
  }
  connectionString_ =
      std::regex_replace(connectionString, port, "Port=" + std::to_string(ntohs(address.sin_port)));
  acceptor_ = std::thread([this] { accept(); });
}

DelayingProxy::~DelayingProxy() {
  ends_ = true;
  acceptor_.join();
  for (std::thread& relay : relays_) relay.join();
  ::close(listener_);
}

void DelayingProxy::accept() {
  while (!ends_) {
    pollfd waiting{listener_, POLLIN, 0};
    if (::poll(&waiting, 1, glance) != 1) continue;
    const int client = ::accept(listener_, nullptr, nullptr);
    if (client >= 0) relays_.emplace_back([this, client] { relay(client); });
  }
}

void DelayingProxy::relay(int client) {
  const int server = openSocket(serverPort_, ::connect);
  sendAtOnce(client);
  sendAtOnce(server);
  std::array<pollfd, 2> ends{{{client, POLLIN, 0}, {server, POLLIN, 0}}};
  bool clientSpoke = false;
  int roundTrip = 0;
  for (bool open = server >= 0; open && !ends_;) {
    if (::poll(ends.data(), ends.size(), glance) <= 0) continue;
    if (ends[0].revents != 0) {
      if (!clientSpoke) {
        roundTrip = ++roundTrips_;
        std::this_thread::sleep_for(delay_);
      }
      clientSpoke = true;
      open = passOn(client, server, 0);
    } else {
      clientSpoke = false;
      open = passOn(server, client, roundTrip);
    }
  }
  ::close(client);
  if (server >= 0) ::close(server);
}

/// False when the connection has ended, or is to.
bool DelayingProxy::passOn(int from, int to, int roundTrip) {
  std::array<char, 65536> bytes;
  const ssize_t count = ::recv(from, bytes.data(), bytes.size(), 0);
  if (count <= 0) return false;
  if (roundTrip > 0 && losesAnswer && losesAnswer(roundTrip)) return false;
  return ::send(to, bytes.data(), static_cast<std::size_t>(count), MSG_NOSIGNAL) == count;
}

}  // namespace velk
