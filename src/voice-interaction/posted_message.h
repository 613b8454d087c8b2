// The only kind of message that native code posts to a page: a voice command.
#ifndef CORVIS_VOICE_INTERACTION_POSTED_MESSAGE_H_
#define CORVIS_VOICE_INTERACTION_POSTED_MESSAGE_H_

#include <string>

namespace extension::voice_interaction {

// Returns the compact JSON {"action":…,"listenerId":…,"param":…} for the script's listener of `action`;
// without "param" if `param` is null.
std::string BuildPostedMessage(const char* action, const char* param);

}  // namespace extension::voice_interaction

#endif  // CORVIS_VOICE_INTERACTION_POSTED_MESSAGE_H_
