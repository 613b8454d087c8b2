// What a page's callbacks threw, learnt from the lines that the script API writes while it calls them: the
// voice service only gets "not_support".
#ifndef CORVIS_KIT_APP_CALLBACK_LOG_H_
#define CORVIS_KIT_APP_CALLBACK_LOG_H_

#include <string>

namespace corvis::kit {

class CallbackLog {
 public:
  // Takes the next line of the script API's console.
  void TakeLine(const std::string& line);

  // What the last callback that was called threw, if it was called for `action`; empty otherwise, and when it
  // threw nothing.
  std::string ExceptionOf(const std::string& action) const;

 private:
  std::string action_;
  std::string exception_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_APP_CALLBACK_LOG_H_
