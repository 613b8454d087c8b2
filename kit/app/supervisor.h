// Makes this process exit in time after a signal or at the end of the time limit, even if it is stuck.
#ifndef CORVIS_KIT_APP_SUPERVISOR_H_
#define CORVIS_KIT_APP_SUPERVISOR_H_

#include <chrono>
#include <memory>

namespace corvis::kit {

class Stage;

// Create one per process. SIGINT, SIGTERM, SIGHUP and SIGQUIT end the run's processes and every wait on the
// main loop (service/main_loop.h), the latter with the error kInterrupted. The caller then reports, cleans up
// and exits with signal_status(). If it does not within a grace period (it is stuck in a loop, or in output
// that nobody reads), the supervisor ends the run's processes and exits. SIGPIPE is ignored, so writes fail
// with an error instead.
class Supervisor {
 public:
  // Must be the first statement of main, before any thread starts. Opens closed descriptors among 0 to 2 on
  // /dev/null.
  Supervisor();
  ~Supervisor();
  Supervisor(const Supervisor&) = delete;
  Supervisor& operator=(const Supervisor&) = delete;

  // After `time`, every wait ends with the error kTimeOver. If the process is still there after the grace
  // period, it exits with `status`.
  void EndAfter(std::chrono::milliseconds time, int status);

  // 128 + the number of the signal received, the customary exit status; 0 if none was received.
  int signal_status() const;

 private:
  friend class Stage;
  class Watch;
  // Sets the stage to end with the process; null for none.
  void Attend(Stage* stage);
  std::unique_ptr<Watch> watch_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_APP_SUPERVISOR_H_
