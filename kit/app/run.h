// One run of an application: a bus and a folder of its own, the runtime with its page, the voice service, and
// the conversation between them.
#ifndef CORVIS_KIT_APP_RUN_H_
#define CORVIS_KIT_APP_RUN_H_

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/conversation.h"
#include "app/supervisor.h"
#include "base/result.h"

namespace corvis::kit {

// Where the other programs of the kit and the library are.
struct Places {
  // corvis-tv.
  std::string runtime;
  // libcorvis_voiceinteraction.so.
  std::string library;
  // The folder of the example applications.
  std::string examples;
};

// In the build's folder or the installation that this program belongs to.
Places FindPlaces();

struct RunOptions {
  // A URL, an HTML file or a folder with an index.html.
  std::string page;
  std::string app_id = "com.example.app";
  // "microphone", "voicecontrol" or URIs.
  std::vector<std::string> privileges = {"microphone", "voicecontrol"};
  // Of the page, in pixels.
  int width = 1920;
  int height = 1080;
  // Otherwise in a window on the user's display.
  bool is_headless = true;
  // How long an answer of the page may take.
  std::chrono::milliseconds answer_timeout{5000};
  // More options of corvis-tv, as they are.
  std::vector<std::string> runtime_arguments;
  Places places = FindPlaces();
};

// Take what is said beside the answers, from the main loop, and may be null.
struct RunSinks {
  // A sentence: a late answer, a departure, a crash of the page's process.
  std::function<void(const std::string& sentence)> notice;
  // A line of the page's console.
  RuntimeControl::ConsoleSink console;
  // A line, without its end, of the runtime's standard error; its libraries write there.
  std::function<void(const std::string& line)> runtime_line;
};

class Run {
 public:
  // Starts the processes and the voice service. Doesn't wait for the page: conversation().WaitForApp does.
  // Fails with kNoEnvironment when a program is missing or the folder can't be made.
  static Result<std::unique_ptr<Run>> Start(Supervisor& supervisor, const RunOptions& options,
                                            RunSinks sinks);
  // Ends every process of the run and removes its folder; within little more than two seconds, also when they
  // don't react.
  ~Run();
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;

  Conversation& conversation();

  // Why the application ended, null while it runs: what the runtime said at its end, with the kind that its
  // exit status means. kClosed when its page called window.close() or its window was closed. Ends every wait
  // of the main loop (service/main_loop.h), with this error.
  const Error* ending() const;

 private:
  struct Parts;
  explicit Run(std::unique_ptr<Parts> parts);
  std::unique_ptr<Parts> parts_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_APP_RUN_H_
