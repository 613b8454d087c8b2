// How much of what a page can do by voice a run has spoken.
#ifndef CORVIS_KIT_REPORT_COVERAGE_H_
#define CORVIS_KIT_REPORT_COVERAGE_H_

#include <set>
#include <string>
#include <vector>

#include "script/runner.h"

namespace corvis::kit {

struct CoverageReport {
  // Action names, in the order of the table of actions. What the page registered: spoken and answered, or
  // not.
  std::vector<std::string> spoken;
  std::vector<std::string> unspoken;
  // Registered actions whose every answer was "not_support".
  std::vector<std::string> refused;
  // The callbacks that the application does not have, by their property names.
  std::vector<std::string> missing;
  // Of the registered actions; 100 when there are none.
  int percent = 100;
};

// Listens to a run. Several pages of one application count together.
class Coverage : public Reporter {
 public:
  explicit Coverage(const RegisteredActions& registered) : registered_(registered) {}

  void OnStep(const VoiceScript& script, const StepResult& result) override;

  CoverageReport Report() const;

 private:
  const RegisteredActions& registered_;
  std::set<std::string> seen_;
  std::set<std::string> answered_;
  std::set<std::string> supported_;
};

// As a text of several lines.
std::string Describe(const CoverageReport& report);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_REPORT_COVERAGE_H_
