// Starts and ends Xvfb.
#include "launcher/headless_display.h"

#include <X11/Xauth.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/random.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "launcher/child_processes.h"

namespace corvis::tv {

namespace {

constexpr int kStartTimeoutMs = 10'000;
constexpr std::chrono::milliseconds kEndGrace(1000);

// Writes an authority file with a secret for clients. It is valid for any display, because the server's
// number is not known yet. Returns false on failure.
bool WriteAuthority(const std::string& path) {
  char method[] = "MIT-MAGIC-COOKIE-1";
  std::array<char, 16> cookie{};
  if (getrandom(cookie.data(), cookie.size(), 0) != static_cast<ssize_t>(cookie.size())) return false;
  Xauth entry{};
  entry.family = FamilyWild;
  entry.name = method;
  entry.name_length = sizeof(method) - 1;
  entry.data = cookie.data();
  entry.data_length = cookie.size();
  std::FILE* file = std::fopen(path.c_str(), "w");
  if (file == nullptr) return false;
  const bool is_written = XauWriteAuth(file, &entry) != 0;
  return std::fclose(file) == 0 && is_written;
}

[[noreturn]] void BecomeServer(const char* const* arguments) {
  prctl(PR_SET_PDEATHSIG, SIGTERM);
  // Ctrl-C must only reach the runtime, which ends its server last.
  setpgid(0, 0);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
  dup2(nothing, STDIN_FILENO);
  dup2(nothing, STDOUT_FILENO);
  dup2(nothing, STDERR_FILENO);
  execvp(arguments[0], const_cast<char* const*>(arguments));
  _exit(127);
}

// Reads the server's number and a newline, which it writes when it is ready. Returns false if the server has
// ended or the time is over. It writes them separately, and exits if the pipe is closed.
bool IsReady(int fd) {
  for (pollfd ready{fd, POLLIN, 0};;) {
    const int count = poll(&ready, 1, kStartTimeoutMs);
    // The main loop handles the signal as soon as it runs.
    if (count < 0 && errno == EINTR) continue;
    char byte = 0;
    if (count <= 0 || read(fd, &byte, 1) != 1) return false;
    if (byte == '\n') return true;
  }
}

std::string SocketOf(const std::string& number) {
  return "/tmp/.X11-unix/X" + number;
}

// A number that no display uses. Not left to the server, because with -displayfd it takes no lock and,
// without a socket in the abstract namespace, would reuse the number and the socket of another server.
std::string FreeNumber() {
  constexpr unsigned kFirst = 100;
  constexpr unsigned kCount = 59000;
  for (;;) {
    unsigned random = 0;
    getrandom(&random, sizeof(random), 0);
    std::string number = std::to_string(kFirst + random % kCount);
    if (access(SocketOf(number).c_str(), F_OK) != 0) return number;
  }
}

}  // namespace

HeadlessDisplay::HeadlessDisplay(int width, int height, const std::string& folder)
    : screen_(std::to_string(width) + "x" + std::to_string(height) + "x24"),
      authority_(folder + "/xauthority") {
  if (WriteAuthority(authority_))
    StartServer();
  else
    authority_.clear();
}

void HeadlessDisplay::StartServer() {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return;
  number_ = FreeNumber();
  const std::string display = ":" + number_;
  const std::string fd = std::to_string(ends[1]);
  // Listens only on a socket in the file system, and accepts only clients with the cookie.
  const char* const arguments[] = {"Xvfb", display.c_str(), "-displayfd", fd.c_str(),         "-screen",
                                   "0",    screen_.c_str(), "-auth",      authority_.c_str(), "-nolisten",
                                   "tcp",  "-nolisten",     "local",      "-noreset",         nullptr};
  server_ = fork();
  if (server_ == 0) {
    fcntl(ends[1], F_SETFD, 0);
    BecomeServer(arguments);
  }
  close(ends[1]);
  ready_ = ends[0];
}

bool HeadlessDisplay::IsServerReady() {
  const bool is_ready = server_ > 0 && IsReady(ready_);
  if (ready_ >= 0) close(std::exchange(ready_, -1));
  return is_ready;
}

std::string HeadlessDisplay::Await() {
  // Retry, because another server may take the number at the same time.
  constexpr int kAttempts = 3;
  if (authority_.empty())
    return "The display's authority file can't be written; is there space in the temporary folder?";
  for (int i = 0; i < kAttempts; ++i) {
    if (IsServerReady()) {
      setenv("DISPLAY", (":" + number_).c_str(), 1);
      setenv("XAUTHORITY", authority_.c_str(), 1);
      setenv("GDK_BACKEND", "x11", 1);
      return "";
    }
    EndServer();
    if (i + 1 < kAttempts) StartServer();
  }
  return "Xvfb did not start; install the package xvfb, or run with a display and without --headless.";
}

HeadlessDisplay::~HeadlessDisplay() {
  if (ready_ >= 0) close(ready_);
  EndServer();
}

void HeadlessDisplay::EndServer() {
  if (server_ <= 0) return;
  kill(server_, SIGTERM);
  kill(server_, SIGCONT);
  if (!AwaitChild(server_, kEndGrace)) kill(server_, SIGKILL);
  server_ = -1;
  // A server that was killed has not removed them itself.
  unlink(("/tmp/.X" + number_ + "-lock").c_str());
  unlink(SocketOf(number_).c_str());
}

}  // namespace corvis::tv
