// Screenshots of the page at failed steps.
#ifndef CORVIS_KIT_SCRIPT_SCREENSHOTS_H_
#define CORVIS_KIT_SCRIPT_SCREENSHOTS_H_

#include <string>

#include "app/conversation.h"
#include "base/result.h"
#include "events/events.h"

namespace corvis::kit {

// Saves a screenshot, named after the step's place, in `folder`, which is created if necessary. Returns the
// file's path.
Result<std::string> SaveScreenshot(Conversation& conversation, const std::string& folder,
                                   const ScriptPlace& place);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_SCRIPT_SCREENSHOTS_H_
