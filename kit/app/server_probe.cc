// Asks a server for a page, over a connection of its own.
#include "app/server_probe.h"

#include <fcntl.h>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <memory>

namespace corvis::kit {

namespace {

constexpr int kConnectMilliseconds = 250;
constexpr int kAnswerMilliseconds = 1000;

struct AddressFreer {
  void operator()(addrinfo* list) const { freeaddrinfo(list); }
};

class Socket {
 public:
  explicit Socket(const addrinfo& address)
      : number_(socket(address.ai_family, address.ai_socktype | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
    // The result comes with the event.
    static_cast<void>(connect(number_, address.ai_addr, address.ai_addrlen));
    int error = 0;
    socklen_t size = sizeof(error);
    is_connected_ = Waits(POLLOUT, kConnectMilliseconds) &&
                    getsockopt(number_, SOL_SOCKET, SO_ERROR, &error, &size) == 0 && error == 0;
  }
  ~Socket() {
    if (number_ >= 0) close(number_);
  }
  Socket(const Socket&) = delete;
  Socket& operator=(const Socket&) = delete;

  bool is_connected() const { return is_connected_; }

  bool Answers(const std::string& request) const {
    char byte = 0;
    return send(number_, request.data(), request.size(), MSG_NOSIGNAL) > 0 &&
           Waits(POLLIN, kAnswerMilliseconds) && recv(number_, &byte, 1, 0) == 1;
  }

 private:
  // Whether the event happens in time.
  bool Waits(short event, int milliseconds) const {
    pollfd watched = {number_, event, 0};
    return poll(&watched, 1, milliseconds) == 1;
  }

  const int number_;
  bool is_connected_ = false;
};

}  // namespace

ServerAddress AddressOf(const std::string& url) {
  ServerAddress address;
  address.is_encrypted = url.compare(0, 8, "https://") == 0;
  if (!address.is_encrypted && url.compare(0, 7, "http://") != 0) return address;
  const size_t begin = url.find("//") + 2;
  std::string host = url.substr(begin, url.find_first_of("/?#", begin) - begin);
  host.erase(0, host.find('@') == std::string::npos ? 0 : host.find('@') + 1);
  const size_t colon = host.rfind(':');
  const bool has_port = colon != std::string::npos && host.find(']', colon) == std::string::npos;
  address.port = has_port ? host.substr(colon + 1) : address.is_encrypted ? "443" : "80";
  if (has_port) host.erase(colon);
  // [::1]
  const bool is_bracketed = host.size() > 2 && host.front() == '[' && host.back() == ']';
  address.host = is_bracketed ? host.substr(1, host.size() - 2) : host;
  return address;
}

bool IsAnswering(const ServerAddress& address) {
  addrinfo wanted{};
  wanted.ai_socktype = SOCK_STREAM;
  addrinfo* found = nullptr;
  if (getaddrinfo(address.host.c_str(), address.port.c_str(), &wanted, &found) != 0) return false;
  const std::unique_ptr<addrinfo, AddressFreer> list(found);
  const std::string host =
      address.host.find(':') == std::string::npos ? address.host : "[" + address.host + "]";
  const std::string request =
      "GET / HTTP/1.1\r\nHost: " + host + ":" + address.port + "\r\nConnection: close\r\n\r\n";
  for (const addrinfo* one = list.get(); one != nullptr; one = one->ai_next) {
    const Socket connection(*one);
    if (connection.is_connected()) return address.is_encrypted || connection.Answers(request);
  }
  return false;
}

}  // namespace corvis::kit
