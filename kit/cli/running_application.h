// The application of voice scripts, which may be run several times against it.
#ifndef CORVIS_KIT_CLI_RUNNING_APPLICATION_H_
#define CORVIS_KIT_CLI_RUNNING_APPLICATION_H_

#include <memory>
#include <string>

#include "cli/application.h"

namespace corvis::kit {

class RunningApplication {
 public:
  // Keeps the references.
  RunningApplication(Supervisor& supervisor, std::string operand, const ApplicationOptions& options)
      : supervisor_(supervisor), operand_(std::move(operand)), options_(options) {}

  // Starts the application and waits until its page is loaded; the next times loads the page anew, or starts
  // the application again if it has ended.
  Status Begin();
  // Starts it again after it has ended.
  Status StartAgain();

  // After Begin.
  Conversation& conversation() { return run_->conversation(); }

 private:
  // Keeps the state that each script begins with.
  Status NoteBeginning(const Status& ready);

  Supervisor& supervisor_;
  const std::string operand_;
  const ApplicationOptions& options_;
  std::unique_ptr<Run> run_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_RUNNING_APPLICATION_H_
