// Starts and ends the processes of one run, through its keeper.
#ifndef CORVIS_KIT_APP_STAGE_H_
#define CORVIS_KIT_APP_STAGE_H_

#include <sys/types.h>

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

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
};

class Stage {
 public:
  // Starts a bus and, on it, `runtime` (the program and its arguments). Fails with kNoEnvironment, or with
  // the error that ends waits. `supervisor` ends the stage when the process must exit, and must outlive the
  // stage.
  static Result<std::unique_ptr<Stage>> Start(Supervisor& supervisor, const std::vector<std::string>& runtime,
                                              StageEvents events);
  // Ends all processes within three seconds.
  ~Stage();
  Stage(const Stage&) = delete;
  Stage& operator=(const Stage&) = delete;

  // Starts the runtime again after its end, of which nothing more is reported then.
  Status StartRuntimeAgain();

  // The run's folder.
  const std::string& folder() const { return folder_; }

  // Asks the processes to end and does not wait. Thread-safe.
  void TellToEnd() const;
  // Kills the processes that are left and removes the folder. Thread-safe.
  void EndNow();

 private:
  Stage(Supervisor& supervisor, StageEvents events);

  Status Fork(const std::vector<std::string>& runtime);
  void Watch();
  // Returns false when no more reports will come.
  bool ReadReport();
  void TakeReport(const std::string& report);
  bool ReadOutput();
  void TakeOutput(const char* text, size_t size);
  void WaitForKeeper();

  Supervisor& supervisor_;
  StageEvents events_;
  // Main-loop sources for the keeper's reports and the runtime's output; 0 if absent.
  unsigned reports_source_ = 0;
  unsigned output_source_ = 0;
  int output_ = -1;
  // The runtime's current line, still incomplete.
  std::string line_;
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
