// Converts events to JSON objects, which docs/voice-scripts.md describes.
#ifndef CORVIS_KIT_REPORT_JSON_FORMS_H_
#define CORVIS_KIT_REPORT_JSON_FORMS_H_

#include <nlohmann/json_fwd.hpp>

#include "events/events.h"

namespace corvis::kit {

// The external form of an event; null for events that the JSON report leaves out.
nlohmann::ordered_json JsonFormOf(const Event& event);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_REPORT_JSON_FORMS_H_
