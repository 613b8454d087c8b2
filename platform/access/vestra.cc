// The access-control client on a desktop. It answers from the policy file.
#include "nurvo/vestra.h"

#include <unistd.h>

#include <cerrno>
#include <memory>
#include <new>
#include <string>
#include <string_view>

#include "access/policy.h"
#include "nurvo/log.h"
#include "support/c_interface.h"

// Nothing is cached: the policy may change between two checks. The size has no effect.
struct vestra_configuration {
  size_t cache_size = 0;
};
struct vestra {};

namespace {

constexpr const char* kTag = "NURVO_ACCESS";
constexpr int kRefusal = 1;
constexpr int kNoError = 0;

int Check(std::string_view label, std::string_view privilege) {
  const bool is_app = label.substr(0, nurvo::kLabelPrefix.size()) == nurvo::kLabelPrefix;
  if (is_app && nurvo::isGranted(label.substr(nurvo::kLabelPrefix.size()), privilege)) {
    return VESTRA_API_ACCESS_ALLOWED;
  }
  log_print(NURVO_LOG_WARN, kTag, "Denied %s to '%s': %s.", privilege.data(), label.data(),
            is_app ? "no line of the policy grants it" : "the label is not that of an application");
  return kRefusal;
}

}  // namespace

NURVO_EXPORT int vestra_configuration_create(vestra_configuration** configuration) {
  if (configuration == nullptr) return -EINVAL;
  auto made = std::unique_ptr<vestra_configuration>(new (std::nothrow) vestra_configuration);
  if (!made) return -ENOMEM;
  *configuration = made.release();
  return kNoError;
}

NURVO_EXPORT int vestra_configuration_set_cache_size(vestra_configuration* configuration, size_t size) {
  if (configuration == nullptr) return -EINVAL;
  configuration->cache_size = size;
  return kNoError;
}

NURVO_EXPORT int vestra_initialize(vestra** client, const vestra_configuration* /*configuration*/) {
  if (client == nullptr) return -EINVAL;
  auto made = std::unique_ptr<vestra>(new (std::nothrow) vestra);
  if (!made) return -ENOMEM;
  *client = made.release();
  return kNoError;
}

NURVO_EXPORT void vestra_configuration_destroy(vestra_configuration* configuration) {
  const std::unique_ptr<vestra_configuration> owner(configuration);
}

// Releases a client before the process ends; null is allowed. Not every platform provides this function, so
// no header declares it and callers bind it weakly.
extern "C" NURVO_EXPORT void vestra_finish(vestra* client) {
  const std::unique_ptr<vestra> owner(client);
}

NURVO_EXPORT char* vestra_session_from_pid(pid_t pid) {
  const pid_t session = pid > 0 ? getsid(pid) : -1;
  if (session < 0) return nullptr;
  return nurvo::Guarded<char*>(nullptr, [&] { return nurvo::CopyText(std::to_string(session)); });
}

NURVO_EXPORT int vestra_check(vestra* v, const char* client, const char* client_session, const char* user,
                              const char* privilege) {
  if (v == nullptr || client == nullptr || client_session == nullptr || user == nullptr ||
      privilege == nullptr) {
    return -EINVAL;
  }
  return nurvo::Guarded(-ENOMEM, [&] { return Check(client, privilege); });
}
