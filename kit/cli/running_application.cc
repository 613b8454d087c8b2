// Keeps the application between runs of scripts.
#include "cli/running_application.h"

#include <unistd.h>

#include <cstdio>
#include <utility>
#include <vector>

namespace corvis::kit {

namespace {

// On a terminal, a line of another origin must not continue the line that shows the progress.
void PrintLineBesideProgress(const std::string& line) {
  if (isatty(STDOUT_FILENO) == 1 && isatty(STDERR_FILENO) == 1) std::fputs("\r\033[K", stderr);
  PrintLine(line);
}

}  // namespace

Status RunningApplication::Begin() {
  if (run_ != nullptr) return run_->ending() != nullptr ? StartAgain() : conversation().BeginAnew();
  auto run =
      StartApplication(supervisor_, operand_, options_, PrintLineBesideProgress, PrintLineBesideProgress);
  if (!run) return Fail(run.error());
  run_ = std::move(*run);
  conversation().WaitToBeHeard();
  return NoteBeginning(WaitUntilLoaded(*run_, options_));
}

Status RunningApplication::StartAgain() {
  return NoteBeginning(run_->StartAgain(LoadingLimit(options_)));
}

Status RunningApplication::NoteBeginning(const Status& ready) {
  std::vector<std::string> uris;
  for (const std::string& name : options_.run.privileges) uris.push_back(PrivilegeUri(name));
  return ready ? conversation().NoteBeginning(std::move(uris), !options_.run.profile.empty()) : ready;
}

}  // namespace corvis::kit
