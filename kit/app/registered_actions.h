// Tracks the actions that a page registers. The page does not report them to the voice service, so they are
// read from the script API's log lines.
#ifndef CORVIS_KIT_APP_REGISTERED_ACTIONS_H_
#define CORVIS_KIT_APP_REGISTERED_ACTIONS_H_

#include <string>
#include <vector>

namespace corvis::kit {

class RegisteredActions {
 public:
  // Call for each line that the script API logs, in order.
  void TakeLine(const std::string& line);

  // Whether a registration has been observed from its start.
  bool is_known() const { return is_known_; }
  // The actions that the application handles itself, in the order of registration.
  const std::vector<std::string>& own() const { return own_; }
  bool Has(const std::string& action) const;

 private:
  bool is_known_ = false;
  std::string candidate_;
  std::vector<std::string> own_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_APP_REGISTERED_ACTIONS_H_
