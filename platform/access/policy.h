// The desktop's policy: which application holds which privilege.
#ifndef NURVO_PLATFORM_ACCESS_POLICY_H_
#define NURVO_PLATFORM_ACCESS_POLICY_H_

#include <string_view>

namespace nurvo {

// The prefix of a security label; the application id follows.
constexpr std::string_view kLabelPrefix = "User::App::";

// Whether the file that NURVO_POLICY names grants `privilege` to `app_id`, by a line with the application id
// and the privilege. '#' starts a comment. Reads the file at every check, so that grants can change while an
// application runs. Without a file everything is denied.
bool isGranted(std::string_view app_id, std::string_view privilege);

}  // namespace nurvo

#endif  // NURVO_PLATFORM_ACCESS_POLICY_H_
