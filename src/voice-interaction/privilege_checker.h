// Asks the platform's access-control service whether this process's application holds a privilege.
#ifndef CORVIS_VOICE_INTERACTION_PRIVILEGE_CHECKER_H_
#define CORVIS_VOICE_INTERACTION_PRIVILEGE_CHECKER_H_

#include <string>

#include "nurvo/vestra.h"

namespace extension::voice_interaction {

// Gets the identity of the process and its client of the service on first use and caches them; after a
// failure it tries again on the next use. CheckPrivilege does not throw; failures are logged.
class PrivilegeChecker {
 public:
  PrivilegeChecker() = default;
  // Releases the client if the platform supports that.
  ~PrivilegeChecker();
  PrivilegeChecker(const PrivilegeChecker&) = delete;
  PrivilegeChecker& operator=(const PrivilegeChecker&) = delete;

  // Returns true only if the service allows `privilege` (a URI). A failed query counts as a refusal.
  bool CheckPrivilege(const std::string& privilege);

 private:
  // The three texts that identify this process to the service; empty on failure.
  std::string GetSmackLabel();
  std::string GetSession();
  std::string GetUid();

  // Opens a client and stores it in `*handle`; null on failure.
  static vestra* GetVestraInstance(vestra** handle);

  vestra* vestra_handle_ = nullptr;
  std::string smack_label_;
  std::string uid_;
  std::string session_;
};

}  // namespace extension::voice_interaction

#endif  // CORVIS_VOICE_INTERACTION_PRIVILEGE_CHECKER_H_
