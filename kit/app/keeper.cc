// Starts, supervises and ends the processes of a run. It runs in a forked child whose parent may have had
// threads, so it uses only system calls and the standard library.
#include "app/keeper.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <initializer_list>

#include "app/bus_address.h"
#include "app/process_tree.h"
#include "bus_script.h"

namespace corvis::kit {

namespace {

// How long the runtime may take to end after SIGTERM, and then all other processes.
constexpr auto kRuntimeGrace = std::chrono::seconds(2);
constexpr auto kOthersGrace = std::chrono::milliseconds(300);

constexpr int kNotExecuted = 127;

class Keeper {
 public:
  Keeper(const KeeperTask& task, int channel) : task_(task), channel_(channel) {}

  int Run() {
    const std::string problem = Start();
    if (!problem.empty()) {
      Report(kReportProblem, problem);
    } else {
      Report(kReportStarted, folder_);
      WaitForEnd();
    }
    End();
    return problem.empty() ? 0 : 1;
  }

 private:
  void Report(KeeperReport kind, const std::string& text) const {
    const std::string packet = (std::string(1, kind) + text).substr(0, kReportSize);
    send(channel_, packet.data(), packet.size(), MSG_NOSIGNAL);
  }

  // Returns an error message, empty on success.
  std::string Start() {
    sigset_t child;
    sigemptyset(&child);
    sigaddset(&child, SIGCHLD);
    sigprocmask(SIG_BLOCK, &child, nullptr);
    children_ = signalfd(-1, &child, SFD_CLOEXEC | SFD_NONBLOCK);
    std::string problem = MakeFolder();
    const int socket = problem.empty() ? ListenForBus(problem) : -1;
    if (!problem.empty()) return problem;
    bus_ = StartBus(socket);
    close(socket);
    const bool has_server = !task_.commands.server.empty();
    pid_t& first = has_server ? server_ : runtime_;
    first = has_server ? StartServer() : StartRuntime();
    return bus_ > 0 && first > 0 ? "" : "Can't start a process; has this user reached a process limit?";
  }

  std::string MakeFolder() {
    std::string name = task_.parent_folder + "/corvis.XXXXXX";
    if (mkdtemp(name.data()) == nullptr) {
      return "Can't create a folder for the run in " + task_.parent_folder + " (" + std::strerror(errno) +
             "); set TMPDIR to a folder that this user may write to.";
    }
    folder_ = name;
    std::ofstream config(ConfigFile());
    config << kBusConfig;
    config.close();
    if (!config || mkdir(TemporaryFolder().c_str(), S_IRWXU) != 0)
      return "Can't write to the run's folder " + folder_ + "; is the disk full?";
    return "";
  }

  // Creates the socket before the bus starts, so that clients can connect without waiting for the bus.
  int ListenForBus(std::string& problem) const {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string path = folder_ + kBusSocket;
    problem = "The path " + task_.parent_folder + " is too long for a socket; set TMPDIR to a shorter one.";
    if (path.size() >= sizeof(address.sun_path)) return -1;
    std::memcpy(address.sun_path, path.c_str(), path.size());
    problem = "Can't start the bus in " + folder_ + "; set TMPDIR to a folder that can hold sockets.";
    const int listening = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (bind(listening, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0 ||
        listen(listening, SOMAXCONN) != 0) {
      return -1;
    }
    problem.clear();
    return listening;
  }

  pid_t StartBus(int listening) const {
    const pid_t process = StartChild();
    if (process != 0) return process;
    // The protocol of socket activation passes sockets from descriptor 3 on.
    constexpr int kFirstPassed = STDERR_FILENO + 1;
    if (listening == kFirstPassed) listening = fcntl(listening, F_DUPFD, kFirstPassed + 1);
    dup2(listening, kFirstPassed);
    setenv("LISTEN_PID", std::to_string(getpid()).c_str(), 1);
    setenv("LISTEN_FDS", "1", 1);
    SetOutput(open(LogFile().c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, S_IRUSR | S_IWUSR));
    Execute({"dbus-daemon", "--config-file=" + ConfigFile(), "--nofork", "--nopidfile", "--nosyslog"});
  }

  pid_t StartRuntime() const {
    const pid_t process = StartChild();
    if (process != 0) return process;
    SetOutput(task_.runtime_output);
    setenv("DBUS_SESSION_BUS_ADDRESS", BusAddress(folder_ + kBusSocket).c_str(), 1);
    setenv("TMPDIR", TemporaryFolder().c_str(), 1);
    // Don't look for the desktop's accessibility services: this bus has none.
    setenv("NO_AT_BRIDGE", "1", 1);
    setenv("GTK_A11Y", "none", 1);
    Execute(task_.commands.runtime);
  }

  // In a process group of its own, because scripts end their group.
  pid_t StartServer() const {
    const pid_t process = StartChild();
    if (process != 0) return process;
    setpgid(0, 0);
    SetOutput(task_.server_output);
    if (!task_.commands.server_folder.empty() && chdir(task_.commands.server_folder.c_str()) != 0) {
      std::perror(task_.commands.server_folder.c_str());
      _exit(kNotExecuted);
    }
    Execute({"/bin/sh", "-c", task_.commands.server});
  }

  // Forks a child that gets SIGTERM when the keeper dies. Returns 0 in the child.
  static pid_t StartChild() {
    const pid_t keeper = getpid();
    const pid_t process = fork();
    if (process != 0) return process;
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (getppid() != keeper) _exit(kNotExecuted);
    return 0;
  }

  static void SetOutput(int descriptor) {
    dup2(descriptor, STDOUT_FILENO);
    dup2(descriptor, STDERR_FILENO);
  }

  [[noreturn]] static void Execute(const std::vector<std::string>& command) {
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (const std::string& argument : command) arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    std::signal(SIGPIPE, SIG_DFL);
    execvp(arguments[0], arguments.data());
    _exit(kNotExecuted);
  }

  void WaitForEnd() {
    pollfd watched[] = {{channel_, POLLIN, 0}, {children_, POLLIN, 0}};
    for (;;) {
      poll(watched, std::size(watched), -1);
      if (watched[0].revents != 0 && !TakeRequest()) return;
      Reap();
    }
  }

  // False if the other end has no more requests.
  bool TakeRequest() {
    char request = 0;
    if (recv(channel_, &request, sizeof(request), MSG_DONTWAIT) <= 0) return false;
    EndRuntime();
    runtime_ = StartRuntime();
    Report(kReportStarted, folder_);
    return true;
  }

  void EndRuntime() const {
    if (runtime_ <= 0) return;
    TellToEnd(runtime_);
    if (!WaitForChild(runtime_, kRuntimeGrace)) kill(runtime_, SIGKILL);
  }

  void Reap() {
    signalfd_siginfo ignored;
    while (read(children_, &ignored, sizeof(ignored)) > 0) {
    }
    int status = 0;
    for (pid_t process = 0; (process = waitpid(-1, &status, WNOHANG)) > 0;) {
      if (process == runtime_) {
        runtime_ = 0;
        Report(kReportRuntimeEnded, std::to_string(status));
      } else if (process == server_) {
        Report(kReportServerEnded, std::to_string(status));
      } else if (process == bus_) {
        Report(kReportBusEnded, std::to_string(status) + " " + BusLog());
      }
    }
  }

  // The last line that the bus printed.
  std::string BusLog() const {
    std::ifstream log(LogFile());
    std::string last = "it printed nothing";
    for (std::string line; std::getline(log, line);) last = line;
    return last;
  }

  // Ends the runtime before the bus, because its page unregisters over the bus. The others get what it leaves
  // of its time: a display server that is killed leaves its socket behind.
  void End() {
    using std::chrono::steady_clock;
    const auto end = steady_clock::now() + kRuntimeGrace;
    EndRuntime();
    const auto left = std::max(end - steady_clock::now(), steady_clock::duration::zero());
    EndDescendants(std::chrono::duration_cast<std::chrono::milliseconds>(left) + kOthersGrace);
    std::error_code ignored;
    if (!folder_.empty()) std::filesystem::remove_all(folder_, ignored);
  }

  std::string ConfigFile() const { return folder_ + "/bus.conf"; }
  std::string LogFile() const { return folder_ + "/bus.log"; }
  // Kept short, because programs create sockets in it and socket paths are limited.
  std::string TemporaryFolder() const { return folder_ + "/tmp"; }

  const KeeperTask& task_;
  const int channel_;
  int children_ = -1;
  std::string folder_;
  pid_t bus_ = 0;
  pid_t runtime_ = 0;
  pid_t server_ = 0;
};

// Moves the descriptors to the numbers after standard error and closes all others above.
void KeepOnly(std::initializer_list<int*> descriptors) {
  int next = STDERR_FILENO + 1;
  const int end = next + static_cast<int>(descriptors.size());
  // Duplicate all to higher numbers first, so that no dup3 overwrites another.
  for (int* descriptor : descriptors) *descriptor = fcntl(*descriptor, F_DUPFD, end);
  for (int* descriptor : descriptors) *descriptor = dup3(*descriptor, next++, O_CLOEXEC);
  close_range(static_cast<unsigned>(end), ~0U, 0);
}

}  // namespace

void Keep(const KeeperTask& task, int channel) {
  prctl(PR_SET_NAME, "corvis-keeper");
  // A session of its own keeps the terminal's signals away; all other signals are blocked.
  setsid();
  sigset_t all;
  sigfillset(&all);
  sigprocmask(SIG_SETMASK, &all, nullptr);
  AdoptOrphans();
  KeeperTask own = task;
  KeepOnly({&channel, &own.runtime_output, &own.server_output});
  const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
  for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(nothing, standard);
  _exit(Keeper(own, channel).Run());
}

}  // namespace corvis::kit
