// Starts the workers, gives each the next script when it has finished one, and puts their events in order.
#include "cli/worker_pool.h"

#include <glib-unix.h>
#include <sched.h>
#include <sys/types.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <thread>
#include <utility>

#include "app/process_tree.h"
#include "cli/exit_status.h"
#include "cli/worker.h"
#include "nurvo_desktop/glib_ptr.h"
#include "report/json_forms.h"
#include "script/script_rest.h"
#include "service/main_loop.h"

namespace corvis::kit {

namespace {

using Clock = std::chrono::steady_clock;

// How long workers may take to end their run; less than a supervisor's grace.
constexpr auto kEndTime = std::chrono::milliseconds(2700);
constexpr auto kExitTime = std::chrono::milliseconds(200);

struct Worker {
  pid_t process = 0;
  int input = -1;
  int output = -1;
  unsigned source = 0;
  // The incomplete last line of its output.
  std::string line;
  // The script that it runs.
  std::optional<size_t> script;
  // Why it can't go on; empty if it can.
  std::string obstacle;
};

// The events of a script, of which the first `passed_on` have been passed on.
struct Slot {
  std::vector<Event> events;
  size_t passed_on = 0;
  bool is_done = false;
};

// The command line of this process, with the option that makes it a worker's.
std::vector<std::string> WorkerCommand() {
  std::ifstream file("/proc/self/cmdline", std::ios::binary);
  std::vector<std::string> command;
  for (std::string argument; std::getline(file, argument, '\0');) command.push_back(argument);
  std::error_code ignored;
  command.front() = std::filesystem::read_symlink("/proc/self/exe", ignored).string();
  // After the name of the command, because what follows "--" is no option.
  command.insert(command.begin() + 2, "--worker");
  return command;
}

ErrorKind KindOf(int status) {
  for (const ErrorKind kind : {ErrorKind::kUsage, ErrorKind::kNoApplication, ErrorKind::kCrashing,
                               ErrorKind::kNoEnvironment, ErrorKind::kInterrupted}) {
    if (StatusOf(kind) == status) return kind;
  }
  return ErrorKind::kFailed;
}

class Pool {
 public:
  Pool(const std::vector<SelectedScript>& scripts, EventSink& events)
      : scripts_(scripts), slots_(scripts.size()), events_(events) {}

  Status Run(size_t count) {
    for (size_t i = 0; i < std::min(count, scripts_.size()); ++i) StartWorker();
    const auto is_over = [this] { return workers_.empty() || reason_; };
    while (!is_over() && !IsInterrupted()) WaitUntil(is_over, std::chrono::hours(1));
    if (Reason() == nullptr) return {};
    EndWorkers();
    ReportRest();
    return Fail(*Reason());
  }

 private:
  // Why the run ends early; null if it does not.
  const Error* Reason() const { return reason_ ? &*reason_ : WhyWaitsEnd(); }

  void StartWorker() {
    std::vector<std::string> command = WorkerCommand();
    std::vector<gchar*> arguments;
    arguments.reserve(command.size() + 1);
    for (std::string& argument : command) arguments.push_back(argument.data());
    arguments.push_back(nullptr);
    auto worker = std::make_unique<Worker>();
    GError* failure = nullptr;
    if (g_spawn_async_with_pipes(nullptr, arguments.data(), nullptr, G_SPAWN_DO_NOT_REAP_CHILD, nullptr,
                                 nullptr, &worker->process, &worker->input, &worker->output, nullptr,
                                 &failure) == FALSE) {
      const nurvo::GErrorPtr error(failure);
      reason_ = Error{"Can't start a worker (--jobs): " + std::string(error->message) + ".",
                      ErrorKind::kNoEnvironment};
      return;
    }
    Watch(*worker);
    GiveScript(*worker);
    workers_.push_back(std::move(worker));
  }

  void Watch(Worker& worker) {
    struct Reading {
      Pool& pool;
      Worker& worker;
    };
    worker.source = g_unix_fd_add_full(
        G_PRIORITY_DEFAULT, worker.output, GIOCondition(G_IO_IN | G_IO_HUP | G_IO_ERR),
        [](gint /*output*/, GIOCondition /*condition*/, gpointer data) -> gboolean {
          auto* reading = static_cast<Reading*>(data);
          return reading->pool.Read(reading->worker);
        },
        new Reading{*this, worker}, [](gpointer data) { delete static_cast<Reading*>(data); });
  }

  // The next script, or the end of its input.
  void GiveScript(Worker& worker) {
    if (next_ == scripts_.size() || Reason() != nullptr) return CloseInput(worker);
    worker.script = next_++;
    const std::string task = TaskLine(scripts_[*worker.script]);
    // If the worker has died, its output ends, too.
    for (size_t written = 0; written < task.size();) {
      const ssize_t count = write(worker.input, task.data() + written, task.size() - written);
      if (count <= 0) return;
      written += static_cast<size_t>(count);
    }
  }

  static void CloseInput(Worker& worker) {
    if (worker.input >= 0) close(std::exchange(worker.input, -1));
  }

  // False at the end of the worker's output, when the worker is forgotten.
  bool Read(Worker& worker) {
    char text[65536];
    const ssize_t size = read(worker.output, text, sizeof(text));
    if (size <= 0) {
      Forget(worker);
      return false;
    }
    std::istringstream lines(worker.line + std::string(text, static_cast<size_t>(size)));
    worker.line.clear();
    for (std::string line; std::getline(lines, line);) {
      if (lines.eof()) {
        worker.line = line;
      } else if (auto event = EventOfJson(line); event && *event) {
        Take(worker, std::move(**event));
      }
    }
    PassOn();
    return true;
  }

  void Take(Worker& worker, Event event) {
    if (const auto* abort = std::get_if<RunAborted>(&event)) {
      worker.obstacle = abort->message;
    } else if (const auto* end = std::get_if<RunEnded>(&event)) {
      if (!worker.obstacle.empty() && Reason() == nullptr)
        reason_ = Error{worker.obstacle, KindOf(end->status)};
    } else if (worker.script) {
      TakeOfScript(worker, std::move(event));
    }
  }

  void TakeOfScript(Worker& worker, Event event) {
    Slot& slot = slots_[*worker.script];
    // A step that fails when the run is over fails because of that.
    if (auto* step = std::get_if<StepDone>(&event); step != nullptr && step->failure && Reason() != nullptr)
      step->failure = Failure{Reason()->message, "", "", step->failure->console, ""};
    slot.is_done = std::get_if<ScriptDone>(&event) != nullptr;
    slot.events.push_back(std::move(event));
    if (!slot.is_done) return;
    worker.script.reset();
    GiveScript(worker);
  }

  void Forget(Worker& worker) {
    CloseInput(worker);
    close(worker.output);
    int status = 0;
    if (!WaitForChild(worker.process, kExitTime, &status)) {
      kill(worker.process, SIGKILL);
      WaitForChild(worker.process, kEndTime, &status);
    }
    if (!worker.obstacle.empty() && Reason() == nullptr) reason_ = Error{worker.obstacle};
    const bool has_failed = worker.script && Reason() == nullptr;
    if (has_failed) {
      Finish(*worker.script, "The worker that ran this script " + HowItEnded(status) + ".");
      PassOn();
    }
    const auto same = [&worker](const auto& other) { return other.get() == &worker; };
    workers_.erase(std::find_if(workers_.begin(), workers_.end(), same));
    if (has_failed && next_ < scripts_.size()) StartWorker();
  }

  void Finish(size_t script, const std::string& failure) {
    AddRest(slots_[script].events, scripts_[script].script, failure);
    slots_[script].is_done = true;
  }

  void PassOn() {
    for (; first_ < slots_.size(); ++first_) {
      Slot& slot = slots_[first_];
      while (slot.passed_on < slot.events.size()) events_.Take(slot.events[slot.passed_on++]);
      if (!slot.is_done) return;
      slot.events = {};
      slot.passed_on = 0;
    }
  }

  // Lets the workers report what they were doing, and kills those that don't end.
  void EndWorkers() {
    for (const auto& worker : workers_) {
      CloseInput(*worker);
      TellToEnd(worker->process);
    }
    const auto end = Clock::now() + kEndTime;
    while (!workers_.empty() && Clock::now() < end) {
      constexpr auto kInterval = std::chrono::milliseconds(5);
      if (g_main_context_iteration(nullptr, FALSE) == FALSE) std::this_thread::sleep_for(kInterval);
    }
    for (const auto& worker : workers_) {
      g_source_remove(worker->source);
      kill(worker->process, SIGKILL);
    }
  }

  // Nothing is reported of scripts if none was begun.
  void ReportRest() {
    const auto has_begun = [](const Slot& slot) { return slot.is_done || !slot.events.empty(); };
    if (std::none_of(slots_.begin(), slots_.end(), has_begun)) return;
    for (size_t i = 0; i < slots_.size(); ++i) {
      if (!slots_[i].is_done) Finish(i, slots_[i].events.empty() ? "" : Reason()->message);
    }
    PassOn();
  }

  const std::vector<SelectedScript>& scripts_;
  std::vector<Slot> slots_;
  EventSink& events_;
  std::vector<std::unique_ptr<Worker>> workers_;
  // The next script to run, and the first that is not passed on as a whole.
  size_t next_ = 0;
  size_t first_ = 0;
  std::optional<Error> reason_;
};

// In MiB; 0 if it is not known.
long AvailableMemory() {
  std::ifstream file("/proc/meminfo");
  constexpr long kKibibytes = 1024;
  for (std::string name, unit; file >> name;) {
    long size = 0;
    if (name == "MemAvailable:" && file >> size) return size / kKibibytes;
    std::getline(file, unit);
  }
  return 0;
}

}  // namespace

long SuitableWorkers() {
  // A run takes about 350 MiB; a heavy page some more.
  constexpr long kMemoryOfWorker = 600;
  cpu_set_t cores;
  const long core_count = sched_getaffinity(0, sizeof(cores), &cores) == 0 ? CPU_COUNT(&cores) : 1;
  return std::max(1L, std::min(core_count, AvailableMemory() / kMemoryOfWorker));
}

Status RunInWorkers(const std::vector<SelectedScript>& scripts, size_t workers, EventSink& events) {
  return Pool(scripts, events).Run(workers);
}

}  // namespace corvis::kit
