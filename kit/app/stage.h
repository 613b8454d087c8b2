// Starts and ends the processes of one run, through its keeper.
#ifndef CORVIS_KIT_APP_STAGE_H_
#define CORVIS_KIT_APP_STAGE_H_

#include <sys/types.h>

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "app/line_pipe.h"
#include "app/supervisor.h"
#include "base/result.h"

namespace corvis::kit {

// Callbacks for a stage's events. They run on the main loop.
struct StageEvents {
  // A line that the runtime printed, without its newline.
  std::function<void(const std::string& line)> on_line;
  // The runtime has ended. All of its output has been passed to on_line.
  std::function<void(int wait_status)> on_runtime_ended;
  // The bus or the keeper has ended, so the run can't continue.
  std::function<void(const std::string& sentence)> on_broken;
  // A line that the application's server printed, and its end.
  std::function<void(const std::string& line)> on_server_line = {};
  std::function<void(int wait_status)> on_server_ended = {};
};

// Whether there is a program of this name or path.
bool IsProgram(const std::string& name);

// What a stage starts.
struct StageCommands {
  // The program and its arguments.
  std::vector<std::string> runtime;
  // A shell command for the application's server, and the folder in which it is run; both may be empty.
  std::string server;
  std::string server_folder;
};

class Stage {
 public:
  // Starts a bus and, on it, the runtime; with a server the server instead, so that the runtime can be
  // started once that answers. Fails with kNoEnvironment, or with the error that ends waits. `supervisor`
  // ends the stage when the process must exit, and must outlive the stage.
  static Result<std::unique_ptr<Stage>> Start(Supervisor& supervisor, const StageCommands& commands,
                                              StageEvents events);
  // Ends all processes within three seconds.
  ~Stage();
  Stage(const Stage&) = delete;
  Stage& operator=(const Stage&) = delete;

  // Starts the runtime after the server, or again after its end, of which nothing more is reported then.
  Status StartRuntimeAgain();

  // The run's folder.
  const std::string& folder() const { return folder_; }

  // Asks the processes to end and does not wait. Thread-safe.
  void TellToEnd() const;
  // Kills the processes that are left and removes the folder. Thread-safe.
  void EndNow();

 private:
  Stage(Supervisor& supervisor, StageEvents events);

  Status Fork(const StageCommands& commands);
  void Watch();
  // Returns false when no more reports will come.
  bool ReadReport();
  void TakeReport(const std::string& report);
  void WaitForKeeper();

  Supervisor& supervisor_;
  StageEvents events_;
  // The main-loop source for the keeper's reports; 0 if absent.
  unsigned reports_source_ = 0;
  LinePipe output_;
  LinePipe server_output_;
  std::string folder_;
  std::string problem_;
  bool is_ending_ = false;
  bool is_starting_again_ = false;
  // Guards the members that the supervisor's thread also uses.
  mutable std::mutex mutex_;
  pid_t keeper_ = 0;
  int reports_ = -1;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_APP_STAGE_H_
