// Texts that several reports share.
#ifndef CORVIS_KIT_REPORT_WORDING_H_
#define CORVIS_KIT_REPORT_WORDING_H_

#include <string>

#include "events/events.h"

namespace corvis::kit {

// Why a step failed: the message, the expected and the actual value.
std::string Describe(const Failure& failure);

// A summary of the coverage, in several lines.
std::string Describe(const CoverageMeasured& coverage);

// Collects why attempts of a test failed.
class FailedAttempts {
 public:
  // Notes the failure of a step that another attempt replaced.
  void Note(const StepDone& step);
  // For a test with several attempts, a line for each failed one that was replaced. Then forgets them.
  std::string Describe(const TestDone& test);

 private:
  std::string lines_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_REPORT_WORDING_H_
