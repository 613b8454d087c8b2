// Waits for signals and deadlines on a separate thread, because the main thread may be stuck.
#include "app/supervisor.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <mutex>
#include <optional>
#include <thread>

#include "app/process_tree.h"
#include "app/stage.h"
#include "service/main_loop.h"

namespace corvis::kit {

namespace {

using Clock = std::chrono::steady_clock;

// How long the program may take to report and exit after a signal or deadline.
constexpr auto kGrace = std::chrono::seconds(3);

constexpr int kSignalStatus = 128;

// Opens them read-only, so that writing fails just as it does on a closed descriptor.
void OpenStandardDescriptors() {
  int opened = 0;
  do {
    opened = open("/dev/null", O_RDONLY);
  } while (opened >= 0 && opened <= STDERR_FILENO);
  close(opened);
}

// A program started with nohup keeps running when its terminal closes.
bool IsHangupIgnored() {
  struct sigaction action {};
  return sigaction(SIGHUP, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

sigset_t EndingSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGINT, SIGTERM, SIGQUIT}) sigaddset(&signals, signal);
  if (!IsHangupIgnored()) sigaddset(&signals, SIGHUP);
  return signals;
}

std::optional<termios> TerminalState() {
  termios state{};
  return tcgetattr(STDIN_FILENO, &state) == 0 ? std::optional(state) : std::nullopt;
}

}  // namespace

class Supervisor::Watch {
 public:
  explicit Watch(const sigset_t& signals)
      : signals_(signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK)),
        wake_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
        thread_([this] { Run(); }) {}
  ~Watch() {
    is_over_ = true;
    Wake();
    thread_.join();
    close(signals_);
    close(wake_);
  }
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;

  void EndAfter(std::chrono::milliseconds time, int status) {
    const std::lock_guard lock(mutex_);
    deadline_ = Clock::now() + time;
    time_over_status_ = status;
    Wake();
  }

  void Attend(Stage* stage) {
    const std::lock_guard lock(mutex_);
    stage_ = stage;
  }

  int signal_status() const { return signal_status_; }

 private:
  void Wake() const {
    const uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = write(wake_, &one, sizeof(one));
  }

  void Run() {
    pollfd watched[] = {{signals_, POLLIN, 0}, {wake_, POLLIN, 0}};
    while (!is_over_) {
      poll(watched, std::size(watched), MillisecondsLeft());
      uint64_t ignored = 0;
      [[maybe_unused]] const ssize_t count = read(wake_, &ignored, sizeof(ignored));
      TakeSignals();
      const std::lock_guard lock(mutex_);
      if (Clock::now() >= deadline_) TakeDeadline();
    }
  }

  int MillisecondsLeft() {
    const std::lock_guard lock(mutex_);
    if (deadline_ == Clock::time_point::max()) return -1;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline_ - Clock::now()).count();
    constexpr int64_t kLongest = 60'000;
    return static_cast<int>(std::clamp<int64_t>(left, 0, kLongest));
  }

  void TakeSignals() {
    signalfd_siginfo taken{};
    while (read(signals_, &taken, sizeof(taken)) == sizeof(taken)) {
      const std::lock_guard lock(mutex_);
      if (is_ending_) continue;
      signal_status_ = kSignalStatus + static_cast<int>(taken.ssi_signo);
      BeginEnd({"The run was interrupted.", ErrorKind::kInterrupted}, signal_status_);
    }
  }

  void TakeDeadline() {
    if (is_ending_) EndNow();
    if (AreTimeLimitsSuspended()) {
      deadline_ = Clock::now() + kGrace;
      return;
    }
    BeginEnd({"The time limit for the whole run (--total-timeout) is over.", ErrorKind::kTimeOver},
             time_over_status_);
  }

  // Ends the run's processes right away, because the main thread may be waiting for one of them.
  void BeginEnd(Error reason, int status) {
    is_ending_ = true;
    end_status_ = status;
    deadline_ = Clock::now() + kGrace;
    EndWaits(std::move(reason));
    if (stage_ != nullptr) stage_->TellToEnd();
  }

  [[noreturn]] void EndNow() {
    if (stage_ != nullptr) stage_->EndNow();
    RestoreTerminal();
    _exit(end_status_);
  }

  void RestoreTerminal() const {
    if (!terminal_) return;
    // Blocked, because tcsetattr would otherwise stop a background process.
    sigset_t output;
    sigemptyset(&output);
    sigaddset(&output, SIGTTOU);
    pthread_sigmask(SIG_BLOCK, &output, nullptr);
    tcsetattr(STDIN_FILENO, TCSANOW, &*terminal_);
  }

  const int signals_;
  const int wake_;
  // Saved, because a prompt may change it.
  const std::optional<termios> terminal_ = TerminalState();
  std::atomic<bool> is_over_{false};
  std::atomic<int> signal_status_{0};
  std::mutex mutex_;
  Stage* stage_ = nullptr;
  bool is_ending_ = false;
  int end_status_ = 0;
  int time_over_status_ = 0;
  // The next deadline: the end of the time limit or of the grace period.
  Clock::time_point deadline_ = Clock::time_point::max();
  std::thread thread_;
};

Supervisor::Supervisor() {
  OpenStandardDescriptors();
  const sigset_t signals = EndingSignals();
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  std::signal(SIGPIPE, SIG_IGN);
  AdoptOrphans();
  watch_ = std::make_unique<Watch>(signals);
}

// Flushes while the watch still runs: output may block on its reader, and must not block forever.
Supervisor::~Supervisor() {
  std::fflush(nullptr);
}

void Supervisor::EndAfter(std::chrono::milliseconds time, int status) {
  watch_->EndAfter(time, status);
}

int Supervisor::signal_status() const {
  return watch_->signal_status();
}

void Supervisor::Attend(Stage* stage) {
  watch_->Attend(stage);
}

}  // namespace corvis::kit
