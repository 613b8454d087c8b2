// Converts events to JSON objects, which docs/voice-scripts.md describes, and back.
#ifndef CORVIS_KIT_REPORT_JSON_FORMS_H_
#define CORVIS_KIT_REPORT_JSON_FORMS_H_

#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>

#include "base/result.h"
#include "events/events.h"

namespace corvis::kit {

// The external form of an event.
nlohmann::ordered_json JsonFormOf(const Event& event);

// The event of one line of JSON; nothing if this program does not know the event. Fields that it does not
// know are ignored. Fails if the line is no event. Accepts any bytes.
Result<std::optional<Event>> EventOfJson(const std::string& line);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_REPORT_JSON_FORMS_H_
