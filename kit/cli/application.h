// The application that a command is about: its options, and starting it.
#ifndef CORVIS_KIT_CLI_APPLICATION_H_
#define CORVIS_KIT_CLI_APPLICATION_H_

#include <CLI/CLI.hpp>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/run.h"
#include "app/supervisor.h"
#include "base/result.h"

namespace corvis::kit {

struct ApplicationOptions {
  RunOptions run;
  // "NAME=CODE" of keys whose code differs from the table's.
  std::vector<std::string> key_codes;
  // What of the page's console is printed: what the page writes ("page"), the script APIs' lines, too
  // ("all"), or "none".
  std::string console = "none";
};

// For whom an application is shown: people like to see it, where that is possible; programs don't.
enum class Viewer { kPerson, kProgram };

// Declares --headless and --window.
void AddDisplayOptions(CLI::App& app, Viewer viewer, ApplicationOptions& options);

// Declares what the application is and holds, how it is shown, and how long its answers may take. The
// defaults are what `options` holds now.
void AddApplicationOptions(CLI::App& app, Viewer viewer, ApplicationOptions& options);

// Takes a line that is printed.
using Printer = std::function<void(const std::string& line)>;
void PrintLine(const std::string& line);

// Starts the application that the operand names: a URL, or a file or folder, whatever its name looks like.
// What is said beside the answers is printed: the service's notices, and what is written to the console.
Result<std::unique_ptr<Run>> StartApplication(Supervisor& supervisor, const std::string& operand,
                                              const ApplicationOptions& options, Printer notice = PrintLine,
                                              const Printer& console = PrintLine);

// Waits until the application listens: loading a page and its engine takes longer than an answer.
Status WaitUntilListening(Run& run, const ApplicationOptions& options);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_APPLICATION_H_
