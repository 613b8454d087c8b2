// Access control, security labels and application ids in memory. An application's label is its id.
#include "platform/access.h"

#include <cerrno>
#include <memory>
#include <utility>

#include "nurvo/app_manager.h"
#include "nurvo/smack.h"
#include "nurvo/vestra.h"
#include "platform/bus.h"
#include "support/c_interface.h"

struct vestra_configuration {};
struct vestra {};

namespace corvis::simulator {

namespace {

std::set<std::string>& Granted() {
  static auto* const granted = new std::set<std::string>;
  return *granted;
}

}  // namespace

void Grant(std::set<std::string> privileges) {
  Granted() = std::move(privileges);
}

}  // namespace corvis::simulator

int app_manager_get_app_id(pid_t /*pid*/, char** app_id) {
  *app_id = nurvo::CopyText(corvis::simulator::Bus::Get().acting());
  return *app_id == nullptr ? -ENOMEM : 0;
}

ssize_t smack_new_label_from_self(char** label) {
  const std::string& app_id = corvis::simulator::Bus::Get().acting();
  *label = nurvo::CopyText(app_id);
  return *label == nullptr ? -1 : static_cast<ssize_t>(app_id.size());
}

int vestra_configuration_create(vestra_configuration** configuration) {
  *configuration = new vestra_configuration;
  return 0;
}

int vestra_configuration_set_cache_size(vestra_configuration* /*configuration*/, size_t /*size*/) {
  return 0;
}

int vestra_initialize(vestra** client, const vestra_configuration* /*configuration*/) {
  *client = new vestra;
  return 0;
}

void vestra_configuration_destroy(vestra_configuration* configuration) {
  const std::unique_ptr<vestra_configuration> owner(configuration);
}

extern "C" void vestra_finish(vestra* client) {
  const std::unique_ptr<vestra> owner(client);
}

char* vestra_session_from_pid(pid_t /*pid*/) {
  return nurvo::CopyText("page");
}

int vestra_check(vestra* /*client*/, const char* /*label*/, const char* /*session*/, const char* /*user*/,
                 const char* privilege) {
  constexpr int kRefusal = 1;
  return corvis::simulator::Granted().count(privilege) == 1 ? VESTRA_API_ACCESS_ALLOWED : kRefusal;
}
