// A thread that waits for signals and deadlines, since the main thread may be stuck in anything.
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

// How long the program has to report and to exit once it must.
constexpr auto kGrace = std::chrono::seconds(3);

constexpr int kSignalStatus = 128;

// For reading only: what is written there fails, as it would on a closed descriptor.
void OpenStandardDescriptors() {
  int opened = 0;
  do {
    opened = open("/dev/null", O_RDONLY);
  } while (opened >= 0 && opened <= STDERR_FILENO);
  close(opened);
}

// A program that was started with nohup goes on when its terminal goes.
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
    BeginEnd({"The time for the whole run is over.", ErrorKind::kTimeOver}, time_over_status_);
  }

  // The processes are ended at once: the main thread may wait for one of them.
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
    // Else it would stop a process in the background.
    sigset_t output;
    sigemptyset(&output);
    sigaddset(&output, SIGTTOU);
    pthread_sigmask(SIG_BLOCK, &output, nullptr);
    tcsetattr(STDIN_FILENO, TCSANOW, &*terminal_);
  }

  const int signals_;
  const int wake_;
  // A prompt may have changed it.
  const std::optional<termios> terminal_ = TerminalState();
  std::atomic<bool> is_over_{false};
  std::atomic<int> signal_status_{0};
  std::mutex mutex_;
  Stage* stage_ = nullptr;
  bool is_ending_ = false;
  int end_status_ = 0;
  int time_over_status_ = 0;
  // When the next thing happens by itself: the end of the time, or that of the grace.
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

// What is printed still may wait for a reader, and must not wait for ever.
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
