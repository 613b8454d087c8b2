// Runs scripts against an application, one after the other.
#ifndef CORVIS_KIT_CLI_SCRIPT_PLAYER_H_
#define CORVIS_KIT_CLI_SCRIPT_PLAYER_H_

#include <functional>
#include <optional>

#include "base/result.h"
#include "cli/running_application.h"
#include "cli/script_run.h"
#include "events/events.h"
#include "script/script.h"

namespace corvis::kit {

// The next script to run; nothing after the last.
using NextScript = std::function<std::optional<VoiceScript>()>;

// Passes the events of the scripts and the page to `events`. `needs_page`: also those about what the page
// shows. Fails if the run can't start or can't continue.
Status PlayScripts(RunningApplication& application, const ScriptRunOptions& options, bool needs_page,
                   EventSink& events, const NextScript& next);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_SCRIPT_PLAYER_H_
