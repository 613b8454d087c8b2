// corvis-tv: runs one web application with extension libraries, in a window or without. This program starts
// the display and loads the library that does the rest.
#include <dlfcn.h>

#include <csignal>
#include <cstdio>
#include <memory>
#include <string>
#include <variant>

#include "launcher/headless_display.h"
#include "launcher/options.h"
#include "launcher/run.h"
#include "launcher/run_folder.h"

namespace corvis::tv {

namespace {

// Until the main loop takes them, signals wait, so that nothing of the run is left.
void BlockSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) sigaddset(&signals, signal);
  sigprocmask(SIG_BLOCK, &signals, nullptr);
}

int RunWithLibrary(const Options& options, const RunFolder& folder, const DisplayWaiter& await_display) {
  void* library = dlopen(kLauncherLibrary, RTLD_NOW | RTLD_GLOBAL);
  auto* const run =
      library == nullptr ? nullptr : reinterpret_cast<RunFunction*>(dlsym(library, kRunFunction));
  if (run == nullptr)
    return Fail(kExitNoEnvironment, std::string("Can't load the web engine: ") + dlerror() + ".");
  return run(options, folder, await_display);
}

int RunApplication(const Options& options) {
  BlockSignals();
  const RunFolder folder;
  if (folder.path().empty() || !folder.WritePolicy(options.app_id, options.privileges)) {
    return Fail(kExitNoEnvironment, "Can't create a folder for this run; is the temporary folder writable?");
  }
  folder.SetEnvironment(options.app_id);
  if (!options.is_headless) return RunWithLibrary(options, folder, [] { return std::string(); });
  HeadlessDisplay display(options.width, options.height, folder.path());
  return RunWithLibrary(options, folder, [&display] { return display.Await(); });
}

}  // namespace

}  // namespace corvis::tv

int main(int argc, char** argv) {
  const auto parsed = corvis::tv::ParseOptions(argc, argv);
  if (const auto* exit = std::get_if<corvis::tv::Exit>(&parsed)) {
    std::fputs(exit->text.c_str(), exit->status == corvis::tv::kExitOk ? stdout : stderr);
    return exit->status;
  }
  return corvis::tv::RunApplication(std::get<corvis::tv::Options>(parsed));
}
