// The runtime's control interface, as a client: what is asked of a running page.
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

// Speaks with the runtime of one application. Every call waits on the main loop, so that what comes meanwhile
// is handled: the signals that the runtime sent before its reply have reached the sinks when a call returns.
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

  // Both return when the page is loaded.
  Status Load(const std::string& url);
  Status Reload();
  // The value of an expression as JSON text.
  Result<std::string> Evaluate(const std::string& expression);
  // The page's address.
  Result<std::string> Address();
  // Makes this the page's address, without loading anything.
  Status SetAddress(const std::string& url);
  // Goes to the place on the present page that the URL (absolute or relative) names, and gives nothing. When
  // it is another page or no place on one, gives the absolute URL, which is to be loaded.
  Result<std::optional<std::string>> GoToPlace(const std::string& url);
  // Whether the page is loaded, with its images and frames.
  Result<bool> IsLoaded();
  // What the window shows, as the bytes of a PNG picture.
  Result<std::string> Screenshot();
  // Returns when everything that the page wrote so far has reached the sink.
  Status Sync();
  // Ends the page's process when that takes longer than `limit` to respond; the runtime then loads the page
  // again. Whether it did.
  Result<bool> EndHangingPage(std::chrono::milliseconds limit);
  Status SetPrivileges(const std::vector<std::string>& uris);
  Status Quit();

 private:
  class Call;
  class Watch;

  std::unique_ptr<Watch> NewWatch(const tv::ControlSignal& signal,
                                  std::function<void(sd_bus_message* signal)> sink) const;
  // Makes a call and waits for its value; it is empty for a method without one.
  Result<std::string> Ask(const tv::ControlMethod& method,
                          const std::vector<std::string>& arguments = {}) const;
  // Calls a function of page_address.js; gives its value as JSON text.
  Result<std::string> CallPage(const std::string& function, const std::vector<std::string>& arguments = {});
  Status Tell(const tv::ControlMethod& method, const std::vector<std::string>& arguments = {}) const;

  std::string app_id_;
  std::chrono::milliseconds timeout_;
  std::unique_ptr<Watch> console_;
  std::unique_ptr<Watch> crashes_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_APP_RUNTIME_CONTROL_H_
