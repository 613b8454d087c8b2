// The processes and the folder of one run, seen from the program that started it.
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

// Take what happens on a stage, from the main loop.
struct StageEvents {
  // A line that the runtime printed, without its end.
  std::function<void(const std::string& line)> on_line;
  // The runtime has ended, with this wait status. All its lines have been handed over before.
  std::function<void(int wait_status)> on_runtime_ended;
  // Nothing can go on: the bus has ended, or who keeps the processes.
  std::function<void(const std::string& sentence)> on_broken;
};

class Stage {
 public:
  // Starts a bus, and the runtime (the program and its arguments) on it. Fails with kNoEnvironment, or with
  // why waits end. `supervisor` ends the stage in time, and must outlive it.
  static Result<std::unique_ptr<Stage>> Start(Supervisor& supervisor, const std::vector<std::string>& runtime,
                                              StageEvents events);
  // Ends all, within three seconds.
  ~Stage();
  Stage(const Stage&) = delete;
  Stage& operator=(const Stage&) = delete;

  // The run's folder.
  const std::string& folder() const { return folder_; }

  // From any thread: tells the processes to end, and does not wait.
  void TellToEnd() const;
  // From any thread: makes sure that nothing is left; what is there still is ended at once.
  void EndNow();

 private:
  Stage(Supervisor& supervisor, StageEvents events);

  Status Fork(const std::vector<std::string>& runtime);
  void Watch();
  // False when there will be no more.
  bool ReadReport();
  void TakeReport(const std::string& report);
  bool ReadOutput();
  void TakeOutput(const char* text, size_t size);
  void WaitForKeeper();

  Supervisor& supervisor_;
  StageEvents events_;
  // The main loop's sources for the keeper's reports and the runtime's output; 0 for none.
  unsigned reports_source_ = 0;
  unsigned output_source_ = 0;
  int output_ = -1;
  // What the runtime has printed of its present line.
  std::string line_;
  std::string folder_;
  std::string problem_;
  bool is_ending_ = false;
  // Guards what the supervisor's thread uses as well.
  mutable std::mutex mutex_;
  pid_t keeper_ = 0;
  int reports_ = -1;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_APP_STAGE_H_
