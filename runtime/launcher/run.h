// The entry point of the launcher's library, which has the web engine. The program loads it while the display
// starts, since both take about as long.
#ifndef CORVIS_RUNTIME_LAUNCHER_RUN_H_
#define CORVIS_RUNTIME_LAUNCHER_RUN_H_

#include <functional>
#include <string>

#include "launcher/options.h"
#include "launcher/run_folder.h"

namespace corvis::tv {

// Waits until the display accepts clients. Returns an error message, empty on success.
using DisplayWaiter = std::function<std::string()>;

// Runs the application until it ends, and returns the exit status. Unblocks all signals.
using RunFunction = int(const Options& options, const RunFolder& folder, const DisplayWaiter& await_display);

constexpr const char* kLauncherLibrary = "libcorvis_tv_launcher.so";
constexpr const char* kRunFunction = "corvis_tv_run";

}  // namespace corvis::tv

extern "C" corvis::tv::RunFunction corvis_tv_run;

#endif  // CORVIS_RUNTIME_LAUNCHER_RUN_H_
