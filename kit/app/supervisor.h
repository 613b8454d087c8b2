// Ends this process in time, whatever it is doing, when a signal comes or the time of the whole run is over.
#ifndef CORVIS_KIT_APP_SUPERVISOR_H_
#define CORVIS_KIT_APP_SUPERVISOR_H_

#include <chrono>
#include <memory>

namespace corvis::kit {

class Stage;

// One in a process. SIGINT, SIGTERM, SIGHUP and SIGQUIT end every wait of the main loop (service/main_loop.h)
// with an error of kInterrupted, and the runs' processes. The caller then reports, cleans up and exits with
// signal_status(). When it has not within the grace (it is stuck in a loop, or in output that nobody takes),
// the process exits by itself, with nothing of its runs left. SIGPIPE is ignored from now on: writes fail
// instead.
class Supervisor {
 public:
  // The first statement of main, before any thread. Descriptors 0 to 2 that are closed are opened on
  // /dev/null.
  Supervisor();
  ~Supervisor();
  Supervisor(const Supervisor&) = delete;
  Supervisor& operator=(const Supervisor&) = delete;

  // When this time is over, every wait ends with an error of kTimeOver. A process that is still there after
  // the grace exits with `status`.
  void EndAfter(std::chrono::milliseconds time, int status);

  // The exit status of a process that a signal ends, 128 + its number; 0 while none came.
  int signal_status() const;

 private:
  friend class Stage;
  class Watch;
  // The stage that is ended with the process; null for none.
  void Attend(Stage* stage);
  std::unique_ptr<Watch> watch_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_APP_SUPERVISOR_H_
