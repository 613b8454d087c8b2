// Reads /proc to find descendants: no system call lists a process's children.
#include "app/process_tree.h"

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <charconv>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <thread>

namespace corvis::kit {

namespace {

using Clock = std::chrono::steady_clock;

// The polling interval while processes end.
constexpr auto kInterval = std::chrono::milliseconds(5);
// The time that killed processes may take to disappear; longer only in an uninterruptible wait for a device.
constexpr auto kKillTime = std::chrono::seconds(1);

// 0 if the process has ended.
pid_t ParentOf(const std::string& process) {
  std::ifstream stream("/proc/" + process + "/stat");
  std::string line;
  std::getline(stream, line);
  // The name in parentheses may contain any character; the state and the parent's id follow it.
  const size_t name_end = line.rfind(") ");
  pid_t parent = 0;
  constexpr size_t kParent = 4;
  if (name_end != std::string::npos && name_end + kParent < line.size())
    std::from_chars(line.data() + name_end + kParent, line.data() + line.size(), parent);
  return parent;
}

std::multimap<pid_t, pid_t> ChildrenByParent() {
  std::multimap<pid_t, pid_t> children;
  std::error_code ignored;
  for (const auto& entry : std::filesystem::directory_iterator("/proc", ignored)) {
    const std::string name = entry.path().filename();
    pid_t process = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), process);
    if (error == std::errc() && *end == '\0') children.emplace(ParentOf(name), process);
  }
  return children;
}

// Reaps descendants until none is left or `end` is reached. Returns whether none is left.
bool AreGoneBy(Clock::time_point end) {
  for (;;) {
    const std::vector<pid_t> left = Descendants();
    if (left.empty()) return true;
    for (const pid_t process : left) waitpid(process, nullptr, WNOHANG);
    if (Clock::now() >= end) return false;
    std::this_thread::sleep_for(kInterval);
  }
}

}  // namespace

void AdoptOrphans() {
  prctl(PR_SET_CHILD_SUBREAPER, 1);
}

std::vector<pid_t> Descendants() {
  const auto children = ChildrenByParent();
  std::vector<pid_t> found = {getpid()};
  for (size_t i = 0; i < found.size(); ++i) {
    const auto [begin, end] = children.equal_range(found[i]);
    for (auto child = begin; child != end; ++child) found.push_back(child->second);
  }
  found.erase(found.begin());
  return found;
}

void TellToEnd(pid_t process) {
  kill(process, SIGTERM);
  kill(process, SIGCONT);
}

bool WaitForChild(pid_t process, std::chrono::milliseconds time, int* wait_status) {
  const auto end = Clock::now() + time;
  for (;;) {
    if (waitpid(process, wait_status, WNOHANG) != 0) return true;
    if (Clock::now() >= end) return false;
    std::this_thread::sleep_for(kInterval);
  }
}

void EndDescendants(std::chrono::milliseconds grace) {
  for (const pid_t process : Descendants()) TellToEnd(process);
  if (AreGoneBy(Clock::now() + grace)) return;
  // Repeat, because a descendant may start another one before it is killed.
  const auto end = Clock::now() + kKillTime;
  do {
    for (const pid_t process : Descendants()) kill(process, SIGKILL);
  } while (!AreGoneBy(Clock::now() + kInterval) && Clock::now() < end);
}

std::string HowItEnded(int wait_status) {
  if (!WIFSIGNALED(wait_status)) return "ended with status " + std::to_string(WEXITSTATUS(wait_status));
  const int signal = WTERMSIG(wait_status);
  return "was ended by signal " + std::to_string(signal) + " (" + strsignal(signal) + ")";
}

}  // namespace corvis::kit
