// Single keys on standard input, while the main loop runs.
#ifndef CORVIS_KIT_CLI_WATCH_KEYS_H_
#define CORVIS_KIT_CLI_WATCH_KEYS_H_

#include <termios.h>

#include <optional>
#include <string>

namespace corvis::kit {

// On a terminal a key counts without Enter; otherwise the first letter of each line. The end of input is no
// key.
class WatchKeys {
 public:
  WatchKeys();
  ~WatchKeys();
  WatchKeys(const WatchKeys&) = delete;
  WatchKeys& operator=(const WatchKeys&) = delete;

  // The next key, '\n' for Enter; nothing as long as there is none.
  std::optional<char> Take();

 private:
  void Read();

  // The state of a terminal to return to.
  std::optional<termios> before_;
  std::string keys_;
  bool is_line_begin_ = true;
  unsigned source_ = 0;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_WATCH_KEYS_H_
