// Looks at a page without a conversation: its items, and what is wrong with it.
#ifndef CORVIS_VOICE_APP_LOOKS_H_
#define CORVIS_VOICE_APP_LOOKS_H_

#include "app/options.h"
#include "run/conversation.h"

namespace corvis::voice {

// Prints what can be selected on the screen, and makes the picture that the options ask for. Returns the exit
// status.
int ShowItems(Conversation& conversation, const Options& options);

// Prints what would make voice fail on the page. Returns the exit status.
int ShowFindings(Conversation& conversation, const Options& options);

}  // namespace corvis::voice

#endif  // CORVIS_VOICE_APP_LOOKS_H_
