// Looks at a page without a conversation: its items, and what is wrong with it.
#ifndef CORVIS_KIT_CLI_LOOKS_H_
#define CORVIS_KIT_CLI_LOOKS_H_

#include "cli/options.h"
#include "app/conversation.h"

namespace corvis::kit {

// Prints what can be selected on the screen, and makes the picture that the options ask for. Returns the exit
// status.
int ShowItems(Conversation& conversation, const Options& options);

// Prints what would make voice fail on the page. Returns the exit status.
int ShowFindings(Conversation& conversation, const Options& options);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_LOOKS_H_
