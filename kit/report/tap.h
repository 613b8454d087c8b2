// A run as TAP 14, the Test Anything Protocol: a line for each step, and what went wrong as YAML.
#ifndef CORVIS_KIT_REPORT_TAP_H_
#define CORVIS_KIT_REPORT_TAP_H_

#include <cstdio>
#include <string>
#include <vector>

#include "script/runner.h"

namespace corvis::kit {

class TapReporter : public Reporter {
 public:
  explicit TapReporter(std::FILE* out) : out_(out) {}

  void OnStart(const std::vector<VoiceScript>& scripts) override;
  void OnStep(const VoiceScript& script, const StepResult& result) override;
  void OnAbort(const std::string& sentence) override;
  void OnCoverage(const CoverageReport& report) override;

 private:
  void TellFailure(const VoiceScript& script, const StepResult& result);

  std::FILE* out_;
  int number_ = 0;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_REPORT_TAP_H_
