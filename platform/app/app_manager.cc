// Application ids of processes. On a desktop a process has its id in its environment.
#include "nurvo/app_manager.h"

#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <string>

#include "app/own_app_id.h"
#include "support/c_interface.h"

namespace {

// The id in another process's environment, as of the start of that process; empty if there is none.
std::string AppIdOf(pid_t pid) {
  const std::string prefix = std::string(nurvo::kAppIdVariable) + '=';
  std::ifstream environment("/proc/" + std::to_string(pid) + "/environ", std::ios::binary);
  for (std::string entry; std::getline(environment, entry, '\0');) {
    if (entry.compare(0, prefix.size(), prefix) == 0) return entry.substr(prefix.size());
  }
  return {};
}

int GetAppId(pid_t pid, char** app_id) {
  const std::string id = pid == getpid() ? nurvo::OwnAppId() : AppIdOf(pid);
  if (id.empty()) return -ENOENT;
  char* const copy = nurvo::CopyText(id);
  if (copy == nullptr) return -ENOMEM;
  *app_id = copy;
  return 0;
}

}  // namespace

NURVO_EXPORT int app_manager_get_app_id(pid_t pid, char** app_id) {
  if (app_id == nullptr || pid <= 0) return -EINVAL;
  return nurvo::Guarded(-ENOMEM, [&] { return GetAppId(pid, app_id); });
}
