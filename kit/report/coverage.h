// Measures how many of a page's registered actions a run has spoken.
#ifndef CORVIS_KIT_REPORT_COVERAGE_H_
#define CORVIS_KIT_REPORT_COVERAGE_H_

#include <set>
#include <string>

#include "events/events.h"

namespace corvis::kit {

// All pages of the application are counted together.
class Coverage : public EventSink {
 public:
  void Take(const Event& event) override;

  // The coverage of the events received so far.
  CoverageMeasured Measure() const;

 private:
  void Add(const Exchange& exchange);

  std::set<std::string> registered_;
  std::set<std::string> answered_;
  // Actions with at least one answer other than "not_support".
  std::set<std::string> supported_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_REPORT_COVERAGE_H_
