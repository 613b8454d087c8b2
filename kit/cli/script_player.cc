// Starts the application and feeds the script runner.
#include "cli/script_player.h"

#include "script/retries.h"
#include "script/runner.h"

namespace corvis::kit {

Status PlayScripts(RunningApplication& application, const ScriptRunOptions& options, bool needs_page,
                   EventSink& events, const NextScript& next) {
  if (const Status ready = application.Begin(); !ready) return ready;
  Retries retries(events, options.retries);
  const auto start_again = [&application] { return application.StartAgain(); };
  ScriptRunner runner(application.conversation(), retries,
                      {options.pace, ScreenshotFolder(options), start_again, needs_page});
  while (const auto script = next()) retries.Run(runner, *script);
  const Error* obstacle = runner.Obstacle();
  return obstacle == nullptr ? Status() : Fail(*obstacle);
}

}  // namespace corvis::kit
