// Parses the log lines "_callback {"action":"…", …" and "_callback exception : …" of the script API.
#include "app/callback_log.h"

#include <string_view>

namespace corvis::kit {

namespace {

constexpr std::string_view kCall = "_callback {\"action\":\"";
constexpr std::string_view kException = "_callback exception : ";
// Longer exception texts are truncated to this many bytes.
constexpr size_t kLongestException = 4096;

bool StartsWith(std::string_view line, std::string_view start) {
  return line.substr(0, start.size()) == start;
}

}  // namespace

void CallbackLog::TakeLine(const std::string& line) {
  if (StartsWith(line, kCall)) {
    action_ = line.substr(kCall.size(), line.find('"', kCall.size()) - kCall.size());
    exception_.clear();
  } else if (StartsWith(line, kException)) {
    exception_ = line.substr(kException.size(), kLongestException);
  }
}

std::string CallbackLog::ExceptionOf(const std::string& action) const {
  return action == action_ ? exception_ : "";
}

}  // namespace corvis::kit
