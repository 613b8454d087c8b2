// The one kind of message that native code posts to a page: a voice command.
#ifndef CORVIS_VOICE_INTERACTION_POSTED_MESSAGE_H_
#define CORVIS_VOICE_INTERACTION_POSTED_MESSAGE_H_

#include <string>

namespace extension::voice_interaction {

// The compact JSON text {"action":…,"listenerId":…,"param":…} for the script's listener of `action`. Without
// "param" when that is null.
std::string BuildPostedMessage(const char* action, const char* param);

}  // namespace extension::voice_interaction

#endif  // CORVIS_VOICE_INTERACTION_POSTED_MESSAGE_H_
