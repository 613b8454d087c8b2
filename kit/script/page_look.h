// Reads texts and values of the page once, without waiting.
#ifndef CORVIS_KIT_SCRIPT_PAGE_LOOK_H_
#define CORVIS_KIT_SCRIPT_PAGE_LOOK_H_

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "app/conversation.h"
#include "base/result.h"

namespace corvis::kit {

// The text or value of the first element that matches the CSS selector; an error if there is none.
Result<nlohmann::json> ShownText(Conversation& conversation, const std::string& selector);

// The value of a JavaScript expression; null for one without a JSON form, an error if it throws.
Result<nlohmann::json> ValueOf(Conversation& conversation, const std::string& expression);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_SCRIPT_PAGE_LOOK_H_
