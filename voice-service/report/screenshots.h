// Pictures of the page beside a report.
#ifndef CORVIS_VOICE_REPORT_SCREENSHOTS_H_
#define CORVIS_VOICE_REPORT_SCREENSHOTS_H_

#include <string>

#include "run/conversation.h"
#include "script/voice_script.h"

namespace corvis::voice {

// Draws what the page shows into `folder`, which is made when it isn't there. Gives the file's name; nothing,
// and a sentence on stderr, on failure.
std::string SaveScreenshot(Conversation& conversation, const std::string& folder, const VoiceScript& script,
                           const Step& step);

}  // namespace corvis::voice

#endif  // CORVIS_VOICE_REPORT_SCREENSHOTS_H_
