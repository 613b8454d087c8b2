// The runtime's control interface, as a client: what the service's tools ask of the page.
#ifndef CORVIS_KIT_APP_RUNTIME_CONTROL_H_
#define CORVIS_KIT_APP_RUNTIME_CONTROL_H_

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace corvis::kit {

// What a call gave: its value, or why it failed.
struct ControlResult {
  bool is_ok = false;
  std::string value;
  std::string error;
};

// Speaks with the runtime of one application. Every call waits on the main loop, so that what comes meanwhile
// is handled.
class RuntimeControl {
 public:
  // Takes the page's console lines: level, text, and "page" or "api".
  using ConsoleSink =
      std::function<void(const std::string& level, const std::string& text, const std::string& source)>;

  explicit RuntimeControl(std::string app_id, std::chrono::milliseconds timeout = std::chrono::seconds(20));
  ~RuntimeControl();
  RuntimeControl(const RuntimeControl&) = delete;
  RuntimeControl& operator=(const RuntimeControl&) = delete;

  void WatchConsole(ConsoleSink sink);
  // Is told when the page's process has crashed; the runtime loads the page again.
  void WatchCrashes(std::function<void()> sink);
  // How long each call may take.
  void set_timeout(std::chrono::milliseconds timeout) { timeout_ = timeout; }

  ControlResult Load(const std::string& url);
  ControlResult Reload();
  // The value of an expression as JSON text.
  ControlResult Evaluate(const std::string& expression);
  // A PNG picture of what the window shows.
  ControlResult Screenshot();
  ControlResult SetPrivileges(const std::vector<std::string>& uris);
  ControlResult Quit();

 private:
  struct Pending;
  struct Console;
  struct Crashes;
  ControlResult Call(const std::string& method, const std::vector<std::string>& arguments,
                     const char* signature);

  std::string app_id_;
  std::chrono::milliseconds timeout_;
  std::unique_ptr<Console> console_;
  std::unique_ptr<Crashes> crashes_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_APP_RUNTIME_CONTROL_H_
