// A run of voice scripts from the command line: reading them, the reports, the exit status.
#ifndef CORVIS_KIT_CLI_TEST_APP_H_
#define CORVIS_KIT_CLI_TEST_APP_H_

#include <memory>
#include <string>
#include <vector>

#include "cli/options.h"
#include "report/coverage.h"
#include "app/conversation.h"
#include "script/runner.h"
#include "script/script_reader.h"

namespace corvis::kit {

// Reads all scripts and prints every error that is in them on stderr. False when there is one.
bool ReadScripts(const std::vector<std::string>& files, std::vector<VoiceScript>& scripts);

class ScriptRun {
 public:
  ScriptRun(const Options& options, const std::vector<VoiceScript>& scripts);

  // Tells the reports that the run can't begin. Returns `status`.
  int Abort(int status, const std::string& sentence);

  // Runs the scripts; returns the exit status.
  int Run(Conversation& conversation);

 private:
  int StatusOf(const RunTotals& totals, const CoverageReport& coverage) const;
  int End(const RunTotals& totals, int status);
  std::string ScreenshotFolder() const;

  const Options& options_;
  const std::vector<VoiceScript>& scripts_;
  std::vector<std::unique_ptr<Reporter>> reporters_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_TEST_APP_H_
