// The events of a script whose run was cut short.
#ifndef CORVIS_KIT_SCRIPT_SCRIPT_REST_H_
#define CORVIS_KIT_SCRIPT_SCRIPT_REST_H_

#include <string>
#include <vector>

#include "events/events.h"
#include "script/script.h"

namespace corvis::kit {

// Adds to the events of a script those that are missing at its end. The first missing step fails with the
// message `failure`, all others are skipped; with an empty message all are.
void AddRest(std::vector<Event>& events, const VoiceScript& script, std::string failure);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_SCRIPT_SCRIPT_REST_H_
