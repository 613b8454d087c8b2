// Pictures of the page beside a report.
#ifndef CORVIS_KIT_SCRIPT_SCREENSHOTS_H_
#define CORVIS_KIT_SCRIPT_SCREENSHOTS_H_

#include <string>

#include "app/conversation.h"
#include "script/script_reader.h"

namespace corvis::kit {

// Draws what the page shows into `folder`, which is made when it isn't there. Gives the file's name; nothing,
// and a sentence on stderr, on failure.
std::string SaveScreenshot(Conversation& conversation, const std::string& folder, const VoiceScript& script,
                           const Step& step);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_SCRIPT_SCREENSHOTS_H_
