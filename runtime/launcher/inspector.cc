// By the engine's own server. It doesn't report who connects, which the kernel's list of connections does.
#include "launcher/inspector.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <utility>

namespace corvis::tv {

namespace {

constexpr guint kLookIntervalMs = 100;

// The port, or that which the kernel chooses for 0; 0 when it is taken.
int FreePort(int port) {
  const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const int yes = 1;
  setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof(yes));
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof(address);
  auto* const plain = reinterpret_cast<sockaddr*>(&address);
  const bool is_free = bind(listener, plain, size) == 0 && listen(listener, 1) == 0 &&
                       getsockname(listener, plain, &size) == 0;
  close(listener);
  return is_free ? ntohs(address.sin_port) : 0;
}

// Whether /proc/net/tcp has an established connection with this local port.
bool IsConnected(int port) {
  constexpr unsigned kEstablished = 1;
  std::ifstream connections("/proc/net/tcp");
  for (std::string line; std::getline(connections, line);) {
    unsigned local = 0;
    unsigned state = 0;
    if (std::sscanf(line.c_str(), " %*d: %*8x:%4x %*8x:%*4x %2x", &local, &state) == 2 &&
        local == static_cast<unsigned>(port) && state == kEstablished) {
      return true;
    }
  }
  return false;
}

}  // namespace

std::unique_ptr<Inspector> Inspector::Start(int port, std::string& error) {
  const int free = FreePort(port);
  if (free == 0) {
    error = "The port " + std::to_string(port) + " for the inspector is in use; choose another.";
    return nullptr;
  }
  setenv("WEBKIT_INSPECTOR_HTTP_SERVER", ("127.0.0.1:" + std::to_string(free)).c_str(), 1);
  return std::unique_ptr<Inspector>(new Inspector(free));
}

Inspector::~Inspector() {
  if (timer_ != 0) g_source_remove(timer_);
}

std::string Inspector::address() const {
  return "http://127.0.0.1:" + std::to_string(port_) + "/";
}

void Inspector::Watch(std::function<void(bool is_attached)> sink) {
  sink_ = std::move(sink);
  timer_ = g_timeout_add(
      kLookIntervalMs,
      [](gpointer inspector) -> gboolean {
        static_cast<Inspector*>(inspector)->Look();
        return G_SOURCE_CONTINUE;
      },
      this);
}

void Inspector::Look() {
  const bool is_attached = IsConnected(port_);
  if (std::exchange(is_attached_, is_attached) != is_attached) sink_(is_attached);
}

}  // namespace corvis::tv
