// Remembers between runs which tests of an application failed, in the user's state folder.
#ifndef CORVIS_KIT_CLI_LAST_FAILED_H_
#define CORVIS_KIT_CLI_LAST_FAILED_H_

#include <optional>
#include <set>
#include <string>
#include <utility>

#include "events/events.h"
#include "script/script.h"

namespace corvis::kit {

// The tests that failed when they last ran. Learns from the events of a run.
class LastFailed : public EventSink {
 public:
  // Reads what is remembered of the application, a URL or a path.
  explicit LastFailed(const std::string& application);

  bool Contains(const VoiceScript& script, const ScriptTest& test) const;

  void Take(const Event& event) override;
  // Without a writable state folder nothing is remembered, which is no failure of the run.
  void Save() const;

 private:
  // The script's absolute path, and the test's name; none for the steps before the first test.
  using Key = std::pair<std::string, std::optional<std::string>>;

  void Read();

  std::string application_;
  std::string file_;
  std::set<Key> tests_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_LAST_FAILED_H_
