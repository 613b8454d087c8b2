// Forks the keeper, reads its reports, and ends it.
#include "app/stage.h"

#include <fcntl.h>
#include <glib-unix.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <charconv>
#include <csignal>
#include <filesystem>
#include <iterator>
#include <string_view>
#include <utility>

#include "app/keeper.h"
#include "app/process_tree.h"
#include "nurvo_desktop/glib_ptr.h"
#include "service/answer_book.h"
#include "service/main_loop.h"

namespace corvis::kit {

namespace {

constexpr auto kStartTime = std::chrono::seconds(20);
// Slightly longer than the keeper's own grace periods.
constexpr auto kEndTime = std::chrono::milliseconds(2700);
// The time from the keeper's last report to its exit.
constexpr auto kExitTime = std::chrono::milliseconds(100);

constexpr auto kReadable = GIOCondition(G_IO_IN | G_IO_HUP | G_IO_ERR);

void Close(int& descriptor) {
  if (descriptor >= 0) close(std::exchange(descriptor, -1));
}

void RemoveSource(unsigned& source) {
  if (source != 0) g_source_remove(std::exchange(source, 0));
}

std::string TemporaryFolder() {
  const char* folder = getenv("TMPDIR");
  return folder == nullptr || *folder == '\0' ? "/tmp" : folder;
}

Status CheckPrograms(const std::string& runtime) {
  if (!IsProgram("dbus-daemon"))
    return Fail("dbus-daemon is missing; install the package dbus.", ErrorKind::kNoEnvironment);
  if (!IsProgram(runtime))
    return Fail("The web runtime " + runtime + " is missing; build or install it.",
                ErrorKind::kNoEnvironment);
  return {};
}

}  // namespace

bool IsProgram(const std::string& name) {
  return nurvo::GText(g_find_program_in_path(name.c_str())) != nullptr;
}

Stage::Stage(Supervisor& supervisor, StageEvents events)
    : supervisor_(supervisor),
      events_(std::move(events)),
      output_([this](const std::string& line) { events_.on_line(line); }),
      server_output_([this](const std::string& line) { events_.on_server_line(line); }) {
  supervisor_.Attend(this);
}

Stage::~Stage() {
  is_ending_ = true;
  RemoveSource(reports_source_);
  output_.Unwatch();
  server_output_.Unwatch();
  TellToEnd();
  WaitForKeeper();
  EndNow();
  supervisor_.Attend(nullptr);
  Close(reports_);
}

Result<std::unique_ptr<Stage>> Stage::Start(Supervisor& supervisor, const StageCommands& commands,
                                            StageEvents events) {
  if (const Status found = CheckPrograms(commands.runtime.front()); !found) return Fail(found.error());
  std::unique_ptr<Stage> stage(new Stage(supervisor, std::move(events)));
  if (const Status forked = stage->Fork(commands); !forked) return Fail(forked.error());
  stage->Watch();
  WaitUntil([&] { return !stage->folder_.empty() || !stage->problem_.empty(); }, kStartTime);
  if (!stage->folder_.empty()) return stage;
  if (IsInterrupted()) return Fail(*WhyWaitsEnd());
  if (stage->problem_.empty()) stage->problem_ = "The run's processes did not start within 20 s.";
  return Fail(stage->problem_, ErrorKind::kNoEnvironment);
}

Status Stage::StartRuntimeAgain() {
  is_starting_again_ = true;
  const char request = kRequestRuntime;
  if (send(reports_, &request, sizeof(request), MSG_NOSIGNAL) > 0)
    WaitUntil([this] { return !is_starting_again_ || !problem_.empty(); }, kStartTime);
  if (!is_starting_again_) return {};
  if (IsInterrupted()) return Fail(*WhyWaitsEnd());
  return Fail("The web runtime can't be started again.", ErrorKind::kNoEnvironment);
}

Status Stage::Fork(const StageCommands& commands) {
  const auto failure =
      Fail("Can't start the run's processes; has this user reached a limit of processes or open files?",
           ErrorKind::kNoEnvironment);
  int reports[2];
  if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, reports) != 0) return failure;
  const std::lock_guard lock(mutex_);
  reports_ = reports[0];
  int output = output_.Open();
  int server_output = commands.server.empty() ? output : server_output_.Open();
  if (output >= 0 && server_output >= 0) {
    keeper_ = fork();
    if (keeper_ == 0) Keep({TemporaryFolder(), commands, output, server_output}, reports[1]);
  }
  if (server_output != output) Close(server_output);
  Close(output);
  close(reports[1]);
  return keeper_ > 0 ? Status() : failure;
}

void Stage::Watch() {
  reports_source_ = g_unix_fd_add(
      reports_, kReadable,
      [](gint, GIOCondition, gpointer stage) -> gboolean { return static_cast<Stage*>(stage)->ReadReport(); },
      this);
  output_.Watch();
  if (server_output_.descriptor() >= 0) server_output_.Watch();
}

bool Stage::ReadReport() {
  char packet[kReportSize];
  const ssize_t size = recv(reports_, packet, sizeof(packet), MSG_DONTWAIT);
  if (size > 0) TakeReport(std::string(packet, static_cast<size_t>(size)));
  if (size > 0 || (size < 0 && errno == EAGAIN)) return true;
  reports_source_ = 0;
  if (is_ending_ || !problem_.empty()) return false;
  problem_ = "The process that supervises the run (corvis-keeper) was terminated.";
  if (!folder_.empty()) events_.on_broken(problem_);
  return false;
}

void Stage::TakeReport(const std::string& report) {
  const std::string text = report.substr(1);
  int status = 0;
  const char* const words = std::from_chars(text.data(), text.data() + text.size(), status).ptr;
  if (report[0] == kReportStarted) {
    folder_ = text;
    is_starting_again_ = false;
  }
  if (report[0] == kReportProblem) problem_ = text;
  if (is_ending_) return;
  if (report[0] == kReportBusEnded)
    events_.on_broken("The run's bus (dbus-daemon) " + HowItEnded(status) + ":" + words);
  if (report[0] == kReportServerEnded) {
    while (server_output_.Read()) {
    }
    events_.on_server_ended(status);
  }
  if (report[0] != kReportRuntimeEnded || is_starting_again_) return;
  // Everything that the runtime printed is in the pipe by now; read it before reporting the end.
  while (output_.Read()) {
  }
  events_.on_runtime_ended(status);
}

void Stage::TellToEnd() const {
  const std::lock_guard lock(mutex_);
  if (reports_ >= 0) shutdown(reports_, SHUT_WR);
}

// Keeps reading the output, because a full pipe would block its writer.
void Stage::WaitForKeeper() {
  const auto end = Clock::now() + kEndTime;
  pollfd watched[] = {
      {reports_, POLLIN, 0}, {output_.descriptor(), POLLIN, 0}, {server_output_.descriptor(), POLLIN, 0}};
  for (auto left = kEndTime; keeper_ > 0 && left.count() > 0;
       left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now())) {
    poll(watched, std::size(watched), static_cast<int>(left.count()));
    if (watched[1].revents != 0 && !output_.Read()) watched[1].fd = -1;
    if (watched[2].revents != 0 && !server_output_.Read()) watched[2].fd = -1;
    char ignored[kReportSize];
    if (watched[0].revents != 0 && recv(reports_, ignored, sizeof(ignored), MSG_DONTWAIT) <= 0) return;
  }
}

void Stage::EndNow() {
  const std::lock_guard lock(mutex_);
  if (keeper_ <= 0) return;
  int status = 0;
  if (!WaitForChild(keeper_, kExitTime, &status)) {
    kill(keeper_, SIGKILL);
    WaitForChild(keeper_, kEndTime, &status);
  }
  keeper_ = 0;
  if (WIFEXITED(status)) return;
  // A killed keeper leaves its children behind; this process has adopted them and ends them.
  EndDescendants(std::chrono::milliseconds(0));
  std::error_code ignored;
  if (!folder_.empty()) std::filesystem::remove_all(folder_, ignored);
}

}  // namespace corvis::kit
