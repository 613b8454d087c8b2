// The application id of this process.
#ifndef NURVO_PLATFORM_APP_OWN_APP_ID_H_
#define NURVO_PLATFORM_APP_OWN_APP_ID_H_

#include <cstdlib>
#include <string>

namespace nurvo {

constexpr const char* kAppIdVariable = "NURVO_APP_ID";

// Empty if the process was not started as an application.
inline std::string OwnAppId() {
  const char* const id = std::getenv(kAppIdVariable);
  return id == nullptr ? "" : id;
}

}  // namespace nurvo

#endif  // NURVO_PLATFORM_APP_OWN_APP_ID_H_
