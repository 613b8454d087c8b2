// Runs a script again as long as tests of it fail.
#ifndef CORVIS_KIT_SCRIPT_RETRIES_H_
#define CORVIS_KIT_SCRIPT_RETRIES_H_

#include <vector>

#include "events/events.h"
#include "script/runner.h"
#include "script/script.h"

namespace corvis::kit {

// Stands between a runner and the sink of its events. Without retries, passes each event on at once.
// Otherwise it keeps the events of a script until all attempts are over, and then passes on the attempts of
// each test one after the other, until the one that passed. Runs of a passed test that only prepared those
// after it are left out.
class Retries : public EventSink {
 public:
  // Keeps the reference. At most `most` retries for each script.
  Retries(EventSink& events, long most) : events_(events), most_(most) {}

  // Runs the script with this runner, whose sink must be this object, and while a test fails, again: from the
  // beginning, because tests may need those before them, up to the last test that has not passed yet.
  void Run(ScriptRunner& runner, const VoiceScript& script);

  void Take(const Event& event) override;

 private:
  // The events of a test, of which the last is its TestDone.
  struct TestRun {
    std::vector<Event> events;
    TestDone& done() { return std::get<TestDone>(events.back()); }
  };
  // The runs of one test until it passed, without those that were skipped, unless all were.
  using Attempts = std::vector<TestRun>;

  void Keep(size_t index, TestRun run);
  // How many tests to run again: up to the last one that has failed so far.
  size_t CountToRetry();
  void PassOn(Attempts& attempts);
  void Finish(const VoiceScript& script);

  EventSink& events_;
  const long most_;
  std::vector<Attempts> tests_;
  // The test that is running, and its events so far.
  size_t index_ = 0;
  TestRun current_;
  std::vector<Event> others_;
  std::chrono::microseconds duration_{0};
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_SCRIPT_RETRIES_H_
