// A client of the runtime's control interface.
#ifndef CORVIS_KIT_APP_RUNTIME_CONTROL_H_
#define CORVIS_KIT_APP_RUNTIME_CONTROL_H_

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/result.h"

namespace corvis::tv {
struct ControlMethod;
struct ControlSignal;
}  // namespace corvis::tv

struct sd_bus_message;

namespace corvis::kit {

// Controls the runtime of one application. Every call runs the main loop until the reply arrives, so signals
// that the runtime sent before its reply have reached the sinks when the call returns.
class RuntimeControl {
 public:
  // Receives the page's console lines: level, text, and source ("page" or "api").
  using ConsoleSink =
      std::function<void(const std::string& level, const std::string& text, const std::string& source)>;

  explicit RuntimeControl(std::string app_id, std::chrono::milliseconds timeout = std::chrono::seconds(20));
  ~RuntimeControl();
  RuntimeControl(const RuntimeControl&) = delete;
  RuntimeControl& operator=(const RuntimeControl&) = delete;

  void WatchConsole(ConsoleSink sink);
  // Calls `sink` when the page's process has crashed; the runtime reloads the page by itself.
  void WatchCrashes(std::function<void()> sink);
  // Calls `sink` when the page has closed itself; the runtime then ends.
  void WatchClosing(std::function<void()> sink);
  // Calls `sink` when a page is loaded.
  void WatchLoads(std::function<void()> sink);
  // Calls `sink` when a browser connects to the inspector, and when the last one has gone.
  void WatchInspector(std::function<void(bool is_attached)> sink);
  // The time limit of each call.
  void set_timeout(std::chrono::milliseconds timeout) { timeout_ = timeout; }

  // Load and Reload return when the page is loaded.
  Status Load(const std::string& url);
  Status Reload();
  // Evaluates a JavaScript expression and returns its value as JSON.
  Result<std::string> Evaluate(const std::string& expression);
  // The URL of the page.
  Result<std::string> Address();
  // Replaces the page's URL without loading anything.
  Status SetAddress(const std::string& url);
  // Navigates to the URL's fragment if the URL (absolute or relative) names the current page, and returns
  // nothing. Otherwise returns the absolute URL, which the caller loads.
  Result<std::optional<std::string>> GoToPlace(const std::string& url);
  // Whether the page is loaded, including its images and frames.
  Result<bool> IsLoaded();
  // A text that changes whenever the page has loaded or changed something since the first call.
  Result<std::string> Activity();
  // The page's items as JSON, as the script API would list them.
  Result<std::string> Items();
  // The visible page as PNG.
  Result<std::string> Screenshot();
  // Press a key of a remote control, by its name in corvis_tv/remote_keys.h, or the keys of a text. Return
  // when the page has handled the events.
  Status PressKey(const std::string& name);
  Status TypeText(const std::string& text);
  // Returns when all console lines written so far have reached the sink.
  Status Sync();
  // Kills the page's process if it takes longer than `limit` to respond; the runtime then reloads the page.
  // Returns whether it was killed.
  Result<bool> EndHangingPage(std::chrono::milliseconds limit);
  Status SetPrivileges(const std::vector<std::string>& uris);
  // Removes all data that pages have stored.
  Status ClearStorage();
  Status Quit();

 private:
  class Call;
  class Watch;

  std::unique_ptr<Watch> NewWatch(const tv::ControlSignal& signal,
                                  std::function<void(sd_bus_message* signal)> sink) const;
  // Calls a method and returns its value; empty for a method that returns none.
  Result<std::string> Ask(const tv::ControlMethod& method,
                          const std::vector<std::string>& arguments = {}) const;
  // Calls a function of page_address.js and returns its value as JSON.
  Result<std::string> CallPage(const std::string& function, const std::vector<std::string>& arguments = {});
  Status Tell(const tv::ControlMethod& method, const std::vector<std::string>& arguments = {}) const;

  std::string app_id_;
  std::chrono::milliseconds timeout_;
  std::unique_ptr<Watch> console_;
  std::unique_ptr<Watch> crashes_;
  std::unique_ptr<Watch> loads_;
  std::unique_ptr<Watch> closing_;
  std::unique_ptr<Watch> inspector_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_APP_RUNTIME_CONTROL_H_
