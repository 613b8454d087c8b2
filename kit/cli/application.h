// Options of the application that a command runs, and starting it.
#ifndef CORVIS_KIT_CLI_APPLICATION_H_
#define CORVIS_KIT_CLI_APPLICATION_H_

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/run.h"
#include "app/supervisor.h"
#include "base/result.h"
#include "cli/command_line.h"
#include "cli/language.h"

namespace corvis::kit {

struct ApplicationOptions {
  RunOptions run;
  // "NAME=CODE" of keys whose code differs from the table's.
  std::vector<std::string> key_codes;
  // The port of the inspector, "0" for any; empty for no inspector.
  std::string inspector_port;
  // The application's URL, of --url, which the command gets as its operand.
  std::string url;
  LanguageOptions language;
  // The console lines to print: "page" for the page's own, "errors" for its errors only, "all" to include
  // those of the script API, or "none".
  std::string console = "none";
};

// Who watches the application. For a person it opens a window by default if there is a display.
enum class Viewer { kPerson, kProgram };

// Whether the environment has a display for windows.
bool HasDisplay();

// Declares --headless and --window.
void AddDisplayOptions(CLI::App& app, Viewer viewer, ApplicationOptions& options);

// Declares the options for the application's id, privileges, display and time limit. The current values of
// `options`, which must outlive `app`, are the defaults.
void AddApplicationOptions(CLI::App& app, Viewer viewer, ApplicationOptions& options);

// Declares --inspect.
void AddInspectOption(CLI::App& app, ApplicationOptions& options);

// Prints one line, given without its newline.
using Printer = std::function<void(const std::string& line)>;
void PrintLine(const std::string& line);

// Starts the application that the operand names. An existing file or folder takes precedence over a URL.
// `notice` receives the service's notices, `console` the lines of the page's console and of the runtime.
Result<std::unique_ptr<Run>> StartApplication(Supervisor& supervisor, const std::string& operand,
                                              const ApplicationOptions& options, Printer notice = PrintLine,
                                              const Printer& console = PrintLine);

// How long the page may take to load and to register.
std::chrono::milliseconds LoadingLimit(const ApplicationOptions& options);

// Wait until the page is loaded, or until the application listens, for a multiple of the answer timeout,
// because loading takes longer.
Status WaitUntilLoaded(Run& run, const ApplicationOptions& options);
Status WaitUntilListening(Run& run, const ApplicationOptions& options);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_APPLICATION_H_
