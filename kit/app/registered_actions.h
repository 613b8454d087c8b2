// Which actions a page has registered, learnt from the lines that the script API writes while it registers:
// the page tells the voice service nothing of it.
#ifndef CORVIS_KIT_APP_REGISTERED_ACTIONS_H_
#define CORVIS_KIT_APP_REGISTERED_ACTIONS_H_

#include <string>
#include <vector>

namespace corvis::kit {

class RegisteredActions {
 public:
  // Takes the next line of the script API's console.
  void TakeLine(const std::string& line);

  // Whether a registration has been seen from its beginning.
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
