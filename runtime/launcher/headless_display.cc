// Starting and ending Xvfb.
#include "launcher/headless_display.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>

namespace corvis::tv {

namespace {

constexpr int kStartTimeoutMs = 10'000;

[[noreturn]] void BecomeServer(int display_fd, const std::string& screen) {
  prctl(PR_SET_PDEATHSIG, SIGTERM);
  // Ctrl-C is for the runtime, which ends its server last.
  setpgid(0, 0);
  const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
  dup2(nothing, STDIN_FILENO);
  dup2(nothing, STDOUT_FILENO);
  dup2(nothing, STDERR_FILENO);
  const std::string fd = std::to_string(display_fd);
  execlp("Xvfb", "Xvfb", "-displayfd", fd.c_str(), "-screen", "0", screen.c_str(), "-nolisten", "tcp",
         "-noreset", nullptr);
  _exit(127);
}

// The display's number, which the server writes when it is ready; empty when it never is.
std::string ReadDisplayNumber(int fd) {
  std::string number;
  for (pollfd ready{fd, POLLIN, 0};;) {
    const int count = poll(&ready, 1, kStartTimeoutMs);
    // A signal is for the main loop, which runs soon.
    if (count < 0 && errno == EINTR) continue;
    char byte = 0;
    if (count <= 0 || read(fd, &byte, 1) != 1) return "";
    if (byte == '\n') return number;
    number += byte;
  }
}

}  // namespace

std::unique_ptr<HeadlessDisplay> HeadlessDisplay::Start(int width, int height, std::string& error) {
  int ends[2];
  if (pipe(ends) != 0) {
    error = "No display can be started: no pipe.";
    return nullptr;
  }
  const std::string screen = std::to_string(width) + "x" + std::to_string(height) + "x24";
  const pid_t server = fork();
  if (server == 0) {
    close(ends[0]);
    BecomeServer(ends[1], screen);
  }
  close(ends[1]);
  std::unique_ptr<HeadlessDisplay> display(new HeadlessDisplay(server));
  const std::string number = ReadDisplayNumber(ends[0]);
  close(ends[0]);
  if (number.empty()) {
    error = "Xvfb did not start; install the package xvfb, or run with a display and without --headless.";
    return nullptr;
  }
  setenv("DISPLAY", (":" + number).c_str(), 1);
  setenv("GDK_BACKEND", "x11", 1);
  return display;
}

HeadlessDisplay::~HeadlessDisplay() {
  if (server_ <= 0) return;
  kill(server_, SIGTERM);
  waitpid(server_, nullptr, 0);
}

}  // namespace corvis::tv
