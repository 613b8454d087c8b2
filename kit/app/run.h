// One run of an application: a private bus and folder, the runtime with the page, the voice service, and the
// conversation with the application.
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

// Paths of the kit's other programs and of the library.
struct Places {
  // corvis-tv.
  std::string runtime;
  // libcorvis_voiceinteraction.so.
  std::string library;
  // The folder of the example applications.
  std::string examples;
  // The JSON schema of corvis.json.
  std::string schema;
};

// The paths in the build folder or installation that this program belongs to.
Places FindPlaces();

// The application's own server, which runs as long as the run.
struct ServerOptions {
  // A shell command, and the folder in which it is run; empty for none and for the present one.
  std::string command;
  std::string folder;
  // How long it may take to answer.
  std::chrono::seconds limit{60};
};

struct RunOptions {
  // A URL, an HTML file, or a folder with an index.html.
  std::string page;
  std::string app_id = "com.example.app";
  // "microphone", "voicecontrol" or URIs.
  std::vector<std::string> privileges = {"microphone", "voicecontrol"};
  // The page's size in pixels.
  int width = 1920;
  int height = 1080;
  // False: the page is shown in a window on the user's display.
  bool is_headless = true;
  // The absolute path of a folder for data that pages store. If empty, each run starts without stored data.
  std::string profile;
  // How long the page may take to answer a command.
  std::chrono::milliseconds answer_timeout{5000};
  // Further options, passed to corvis-tv unchanged.
  std::vector<std::string> runtime_arguments;
  // With a command, `page` is a URL of this server.
  ServerOptions server;
  // The permissions that the page gets without a user's consent, by the names of corvis-tv.
  std::vector<std::string> grants;
  // Whether the script API's console lines are needed when they are written.
  bool is_api_followed = true;
  Places places = FindPlaces();
};

// Callbacks for output other than answers. They run on the main loop and may be null.
struct RunSinks {
  // An event in one sentence: a late answer, a departure, a crash of the page's process.
  std::function<void(const std::string& sentence)> notice;
  // A line of the page's console.
  RuntimeControl::ConsoleSink console;
  // A line, without its newline, that the runtime or one of its libraries printed.
  std::function<void(const std::string& line)> runtime_line;
  // The same of the application's server.
  std::function<void(const std::string& line)> server_line = {};
};

class Run {
 public:
  // Starts the processes, waits for the application's server if it has one, and starts the voice service.
  // Does not wait for the page; conversation().WaitForPage does. Fails with kNoEnvironment if a program is
  // missing or the folder can't be created.
  static Result<std::unique_ptr<Run>> Start(Supervisor& supervisor, const RunOptions& options,
                                            RunSinks sinks);
  // Ends every process of the run and removes its folder. Takes little more than two seconds if they don't
  // react to SIGTERM.
  ~Run();
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;

  Conversation& conversation();

  // After the application has ended by itself: starts it again, lets waits go on, and waits at most for
  // `limit` until its page is loaded.
  Status StartAgain(std::chrono::milliseconds limit);

  // Why the application ended: the runtime's last message, with the kind of its exit status. kClosed after
  // window.close() or when the window was closed. Null while the application runs. The end of the application
  // also ends every wait on the main loop (service/main_loop.h) with this error.
  const Error* ending() const;

 private:
  struct Parts;
  explicit Run(std::unique_ptr<Parts> parts);
  std::unique_ptr<Parts> parts_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_APP_RUN_H_
