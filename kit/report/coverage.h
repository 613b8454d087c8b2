// How much of what a page can do by voice a run has spoken.
#ifndef CORVIS_KIT_REPORT_COVERAGE_H_
#define CORVIS_KIT_REPORT_COVERAGE_H_

#include <set>
#include <string>

#include "events/events.h"

namespace corvis::kit {

// Several pages of one application count together.
class Coverage : public EventSink {
 public:
  void Take(const Event& event) override;

  // Of the events so far.
  CoverageMeasured Measure() const;

 private:
  void Add(const Exchange& exchange);

  std::set<std::string> registered_;
  std::set<std::string> answered_;
  // Answered with anything but "not_support".
  std::set<std::string> supported_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_REPORT_COVERAGE_H_
