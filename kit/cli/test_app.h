// A run of voice scripts from the command line: reading them, the reports, the exit status.
#ifndef CORVIS_KIT_CLI_TEST_APP_H_
#define CORVIS_KIT_CLI_TEST_APP_H_

#include <memory>
#include <string>
#include <vector>

#include "app/conversation.h"
#include "cli/options.h"
#include "events/events.h"
#include "report/coverage.h"
#include "report/reports.h"
#include "script/runner.h"
#include "script/script_reader.h"

namespace corvis::kit {

// Reads all scripts and prints every error that is in them on stderr. False when there is one.
bool ReadScripts(const std::vector<std::string>& files, std::vector<VoiceScript>& scripts);

class ScriptRun {
 public:
  ScriptRun(const Options& options, const std::vector<VoiceScript>& scripts);

  // Ends the run, which can't begin or go on. Returns the exit status.
  int Abort(int status, const std::string& sentence);

  // Runs the scripts; returns the exit status.
  int Run(Conversation& conversation);

 private:
  void AddReport(const ReportFormat& format, OutputFile output);
  int StatusOf(const Totals& totals) const;
  // The status, or another when a report can't be written.
  int End(const Totals& totals, int status);
  std::string ScreenshotFolder() const;

  const Options& options_;
  const std::vector<VoiceScript>& scripts_;
  Clock::time_point begin_ = Clock::now();
  Coverage coverage_;
  std::vector<std::unique_ptr<Report>> reports_;
  EventFanOut events_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_TEST_APP_H_
