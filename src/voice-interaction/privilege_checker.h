// Asks the platform's access-control service whether this process's application holds a privilege.
#ifndef CORVIS_VOICE_INTERACTION_PRIVILEGE_CHECKER_H_
#define CORVIS_VOICE_INTERACTION_PRIVILEGE_CHECKER_H_

#include <string>

#include "nurvo/vestra.h"

namespace extension::voice_interaction {

// What it learns about the process, and its client of the service, are fetched on first use and kept; what
// could not be had is tried again at the next use. Nothing here throws; failures are logged.
class PrivilegeChecker {
 public:
  PrivilegeChecker() = default;
  // Releases the client where the platform offers that.
  ~PrivilegeChecker();
  PrivilegeChecker(const PrivilegeChecker&) = delete;
  PrivilegeChecker& operator=(const PrivilegeChecker&) = delete;

  // True only when the service allows `privilege` (a URI). No answer counts as a refusal.
  bool CheckPrivilege(const std::string& privilege);

 private:
  // The three texts by which the service knows this process; empty when they can't be had.
  std::string GetSmackLabel();
  std::string GetSession();
  std::string GetUid();

  // Opens a client and stores it where `handle` points; null on failure.
  static vestra* GetVestraInstance(vestra** handle);

  vestra* vestra_handle_ = nullptr;
  std::string smack_label_;
  std::string uid_;
  std::string session_;
};

}  // namespace extension::voice_interaction

#endif  // CORVIS_VOICE_INTERACTION_PRIVILEGE_CHECKER_H_
