// A run as a JUnit report, as build servers read it: a suite for each script, a case for each of its tests.
#ifndef CORVIS_KIT_REPORT_JUNIT_H_
#define CORVIS_KIT_REPORT_JUNIT_H_

#include <string>
#include <vector>

#include "script/runner.h"

namespace corvis::kit {

class JUnitReporter : public Reporter {
 public:
  // Writes the file at the end of the run.
  explicit JUnitReporter(std::string file) : file_(std::move(file)) {}

  void OnScript(const VoiceScript& script) override;
  void OnStep(const VoiceScript& script, const StepResult& result) override;
  void OnAbort(const std::string& sentence) override;
  void OnEnd(const RunTotals& totals, int status) override;

 private:
  struct Case {
    std::string name;
    int line = 1;
    std::chrono::microseconds took{0};
    // Empty unless it failed.
    std::string message;
    std::string details;
    std::string screenshot;
    std::string console;
    bool has_run = false;
  };
  struct Suite {
    std::string file;
    std::vector<Case> cases;
  };

  void TakeFailure(Case& test, const VoiceScript& script, const StepResult& result);
  std::string Xml() const;
  static std::string CaseXml(const Suite& suite, const Case& test);

  std::string file_;
  std::vector<Suite> suites_;
  std::string abort_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_REPORT_JUNIT_H_
