// Finds children in /proc and ends them.
#include "launcher/child_processes.h"

#include <poll.h>
#include <sys/wait.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace corvis::tv {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr int kPollMs = 5;

// Collects the children of all threads, because /proc lists them by the thread that started them.
std::vector<pid_t> Children() {
  std::vector<pid_t> children;
  std::error_code ignored;
  for (const auto& thread : std::filesystem::directory_iterator("/proc/self/task", ignored)) {
    std::ifstream list(thread.path() / "children");
    for (pid_t child = 0; list >> child;) children.push_back(child);
  }
  return children;
}

bool IsStopped(pid_t process) {
  std::ifstream status("/proc/" + std::to_string(process) + "/stat");
  std::string text;
  std::getline(status, text);
  // The name in parentheses may contain any character.
  const size_t name_end = text.rfind(')');
  return name_end != std::string::npos && text.compare(name_end, 3, ") T") == 0;
}

}  // namespace

bool AwaitChild(pid_t child, milliseconds time) {
  for (const auto deadline = steady_clock::now() + time;;) {
    // Also true if other code has already reaped the child.
    if (waitpid(child, nullptr, WNOHANG) != 0) return true;
    if (steady_clock::now() >= deadline) return false;
    poll(nullptr, 0, kPollMs);
  }
}

void KillStoppedChildren() {
  for (const pid_t child : Children()) {
    if (IsStopped(child)) kill(child, SIGKILL);
  }
}

}  // namespace corvis::tv
