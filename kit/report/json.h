// A run as events, one JSON object a line, for programs. docs/voice-scripts.md describes them.
#ifndef CORVIS_KIT_REPORT_JSON_H_
#define CORVIS_KIT_REPORT_JSON_H_

#include <cstdio>
#include <string>
#include <vector>

#include "script/runner.h"

namespace corvis::kit {

class JsonReporter : public Reporter {
 public:
  explicit JsonReporter(std::FILE* out) : out_(out) {}

  void OnStart(const std::vector<VoiceScript>& scripts) override;
  void OnScript(const VoiceScript& script) override;
  void OnStep(const VoiceScript& script, const StepResult& result) override;
  void OnAbort(const std::string& sentence) override;
  void OnCoverage(const CoverageReport& report) override;
  void OnEnd(const RunTotals& totals, int status) override;

 private:
  std::FILE* out_;
  Clock::time_point begin_ = Clock::now();
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_REPORT_JSON_H_
