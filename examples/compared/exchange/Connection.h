// What the programs of this folder share, whatever their library is: the names, the connection, and
// what things cost.
#pragma once

#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

constexpr char kSoap[] = "http://schemas.xmlsoap.org/soap/envelope/";
constexpr char kQuotes[] = "urn:example:quotes";

inline std::optional<double> priceOf(std::string_view symbol) {
  if (symbol == "FISH") return 5.5;
  if (symbol == "CHIPS") return 2.25;
  return std::nullopt;
}

// One end of a connection; each sends one message, and then no more.
class Socket {
 public:
  explicit Socket(int descriptor) : descriptor_(descriptor) {}
  ~Socket() { close(descriptor_); }
  Socket(const Socket&) = delete;
  Socket& operator=(const Socket&) = delete;

  void send(std::string_view message) const {
    while (!message.empty()) {
      const ssize_t count = ::send(descriptor_, message.data(), message.size(), MSG_NOSIGNAL);
      check(count);
      message.remove_prefix(static_cast<std::size_t>(count));
    }
    check(shutdown(descriptor_, SHUT_WR));
  }

  std::string receive() const {
    std::string message;
    char block[4096];
    for (ssize_t count = 0; (count = recv(descriptor_, block, sizeof block, 0)) != 0;) {
      check(count);
      message.append(block, static_cast<std::size_t>(count));
    }
    return message;
  }

  static void check(ssize_t result) {
    if (result < 0) throw std::system_error(errno, std::generic_category());
  }

 private:
  const int descriptor_;
};

class Connection {
  struct Pair {
    Pair() { Socket::check(socketpair(AF_UNIX, SOCK_STREAM, 0, ends)); }
    int ends[2];
  };
  const Pair pair_;

 public:
  const Socket client{pair_.ends[0]};
  const Socket server{pair_.ends[1]};
};
