// Finds children in /proc and ends them.
#include "launcher/child_processes.h"

#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace corvis::tv {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr int kPollMs = 5;

bool IsStoppedChild(const std::filesystem::path& process) {
  std::ifstream file(process / "stat");
  std::string text;
  std::getline(file, text);
  // The name in parentheses may contain any character.
  const size_t name_end = text.rfind(')');
  if (name_end == std::string::npos) return false;
  std::istringstream fields(text.substr(name_end + 1));
  char state = 0;
  pid_t parent = 0;
  fields >> state >> parent;
  return state == 'T' && parent == getpid();
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
  // The kernel's own list of a process's children may omit some while others end.
  std::error_code ignored;
  for (const auto& process : std::filesystem::directory_iterator("/proc", ignored)) {
    const pid_t id = std::atoi(process.path().filename().c_str());
    if (id > 0 && IsStoppedChild(process.path())) kill(id, SIGKILL);
  }
}

}  // namespace corvis::tv
