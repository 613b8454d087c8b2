// A runtime in memory: serves the interface tables to the library, creates and destroys pages, makes their
// calls, and records the messages posted to them.
#ifndef CORVIS_TESTING_FAKE_RUNTIME_H_
#define CORVIS_TESTING_FAKE_RUNTIME_H_

#include <functional>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "nurvo/runtime.h"

namespace fake {

class Runtime {
 public:
  // Initializes the library that is linked into this process; `status` is its return value.
  explicit Runtime(std::string missing = "");
  // Destroys the remaining pages and shuts the library down.
  ~Runtime();
  Runtime(const Runtime&) = delete;
  Runtime& operator=(const Runtime&) = delete;

  int32_t status = 0;
  std::string name;
  std::string script;
  // The name of an interface that the runtime does not provide.
  const std::string missing_interface;
  // The messages posted to each page, in order.
  std::map<InstanceHandle, std::vector<std::string>> posted;
  // Called for each posted message.
  std::function<void(InstanceHandle page)> on_post;

  InstanceHandle NewPage();
  void DestroyPage(InstanceHandle page);
  void Shutdown();

  // Makes a synchronous call as a page's script does, with the handler's name and its arguments as JSON.
  // Returns the reply as JSON.
  std::string Call(InstanceHandle page, const std::string& handler, const std::string& arguments = "{}") {
    return CallRaw(page, R"({"cmd":")" + handler + R"(","args":)" + arguments + "}");
  }
  // Like Call, with the text of the whole call.
  std::string CallRaw(InstanceHandle page, const std::string& message);

  // Delivers a message that expects no reply.
  static void Message(InstanceHandle page, const std::string& message);

  // Creates a page that has registered `actions`, the elements of a JSON array, and listens.
  InstanceHandle NewListeningPage(const std::string& actions);
  std::vector<std::string> TakePosted(InstanceHandle page) { return std::exchange(posted[page], {}); }

 private:
  std::set<InstanceHandle> pages_;
};

}  // namespace fake

#endif  // CORVIS_TESTING_FAKE_RUNTIME_H_
