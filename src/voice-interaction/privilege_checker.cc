// Queries the access-control service and determines the identity of this process for it.
#include "voice-interaction/privilege_checker.h"

#include <unistd.h>

#include <cstdio>

#include "nurvo/smack.h"
#include "voice-interaction/exception_text.h"
#include "voice-interaction/module_log.h"
#include "voice-interaction/platform_ptr.h"

// Not every platform can release a client. Without this function the client exists as long as the process.
extern "C" __attribute__((weak)) void vestra_finish(vestra* client);

namespace extension::voice_interaction {

namespace {
// The platform's value, repeated because a platform's headers need to declare functions only.
constexpr int kAccessAllowed = 2;
constexpr size_t kClientCacheSize = 100;
constexpr size_t kUidTextSize = 16;
}  // namespace

PrivilegeChecker::~PrivilegeChecker() {
  if (vestra_handle_ != nullptr && vestra_finish != nullptr) vestra_finish(vestra_handle_);
}

bool PrivilegeChecker::CheckPrivilege(const std::string& privilege) try {
  MODULE_ERROR_F("CheckPrivilege [%s]", privilege.c_str());
  const std::string label = GetSmackLabel();
  const std::string session = GetSession();
  const std::string uid = GetUid();
  if (vestra_handle_ == nullptr && GetVestraInstance(&vestra_handle_) == nullptr) return false;

  MODULE_ERROR_F(
      "Entered CheckAccess vestra_ptr available privStr= %s, smackLabelStr = %s, uidStr = %s  "
      "clientSessionStr = %s",
      privilege.c_str(), label.c_str(), uid.c_str(), session.c_str());
  const int result =
      vestra_check(vestra_handle_, label.c_str(), session.c_str(), uid.c_str(), privilege.c_str());
  if (result != kAccessAllowed) {
    MODULE_ERROR_F("CheckAccess failed [%d]", result);
    return false;
  }
  MODULE_ERROR("vestra_check passed");
  return true;
} catch (...) {
  MODULE_ERROR_F("%s", CurrentExceptionText());
  return false;
}

vestra* PrivilegeChecker::GetVestraInstance(vestra** handle) {
  vestra_configuration* configuration = nullptr;
  int result = vestra_configuration_create(&configuration);
  if (result != 0) MODULE_ERROR_F("vestra_configuration_create [%d] failed!", result);
  result = vestra_configuration_set_cache_size(configuration, kClientCacheSize);
  if (result != 0) MODULE_ERROR_F("vestra_configuration_set_cache_size [%d] failed!", result);
  result = vestra_initialize(handle, configuration);
  if (result != 0) {
    MODULE_ERROR_F("vestra_initialize [%d] failed!", result);
    *handle = nullptr;
  } else {
    MODULE_ERROR_F("vestra_initialize passed with ret = [%d] ", result);
  }
  vestra_configuration_destroy(configuration);
  return *handle;
}

std::string PrivilegeChecker::GetSmackLabel() {
  if (!smack_label_.empty()) return smack_label_;
  char* text = nullptr;
  const ssize_t length = smack_new_label_from_self(&text);
  if (length > 0 && text != nullptr) {
    const PlatformMemory<char> label(text);
    MODULE_ERROR_F("smack label: [%s]", label.get());
    smack_label_ = label.get();
  }
  return smack_label_;
}

std::string PrivilegeChecker::GetSession() {
  if (!session_.empty()) return session_;
  const PlatformMemory<char> session(vestra_session_from_pid(getpid()));
  if (session) {
    session_ = session.get();
  } else {
    MODULE_ERROR("vestra_session_from_pid gave no session");
  }
  return session_;
}

std::string PrivilegeChecker::GetUid() {
  if (!uid_.empty()) return uid_;
  char text[kUidTextSize];
  std::snprintf(text, sizeof(text), "%u", getuid());
  uid_ = text;
  MODULE_ERROR_F("uidString: [%s]", uid_.c_str());
  return uid_;
}

}  // namespace extension::voice_interaction
