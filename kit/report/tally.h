// Counts the steps and tests of a run.
#ifndef CORVIS_KIT_REPORT_TALLY_H_
#define CORVIS_KIT_REPORT_TALLY_H_

#include "events/events.h"

namespace corvis::kit {

class Tally : public EventSink {
 public:
  void Take(const Event& event) override;

  const Totals& steps() const { return steps_; }
  const TestTotals& tests() const { return tests_; }

 private:
  Totals steps_;
  TestTotals tests_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_REPORT_TALLY_H_
