// Tracks the exceptions that a page's callbacks throw. The voice service receives only "not_support", so they
// are read from the script API's log lines.
#ifndef CORVIS_KIT_APP_CALLBACK_LOG_H_
#define CORVIS_KIT_APP_CALLBACK_LOG_H_

#include <string>

namespace corvis::kit {

class CallbackLog {
 public:
  // Call for each line that the script API logs, in order.
  void TakeLine(const std::string& line);

  // The exception that the most recent callback threw, if that callback was for `action`; otherwise empty.
  std::string ExceptionOf(const std::string& action) const;

 private:
  std::string action_;
  std::string exception_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_APP_CALLBACK_LOG_H_
