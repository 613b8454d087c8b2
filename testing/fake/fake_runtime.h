// A runtime in memory: serves the interface tables to the library, makes and destroys pages, carries their
// calls, and keeps what is posted to them.
#ifndef CORVIS_TESTING_FAKE_RUNTIME_H_
#define CORVIS_TESTING_FAKE_RUNTIME_H_

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "nurvo/runtime.h"

namespace fake {

class Runtime {
 public:
  // Initialises the library linked into this process; `status` is what it answered.
  Runtime();
  // Destroys the pages that are left and shuts the library down.
  ~Runtime();
  Runtime(const Runtime&) = delete;
  Runtime& operator=(const Runtime&) = delete;

  int32_t status = 0;
  std::string name;
  std::string script;
  // What was posted to each page, in order.
  std::map<InstanceHandle, std::vector<std::string>> posted;
  // Runs within each posting.
  std::function<void(InstanceHandle page)> on_post;

  InstanceHandle NewPage();
  void DestroyPage(InstanceHandle page);
  void Shutdown();

  // A synchronous call of a page's script: the handler's name and its arguments as JSON text. Returns the
  // reply's JSON text.
  std::string Call(InstanceHandle page, const std::string& handler, const std::string& arguments = "{}");
  // The same with the whole call's text.
  std::string CallRaw(InstanceHandle page, const std::string& message);

  // A page that has registered `actions` (a JSON array's inside) and listens.
  InstanceHandle NewListeningPage(const std::string& actions);
  std::vector<std::string> TakePosted(InstanceHandle page);

 private:
  std::map<InstanceHandle, bool> pages_;
};

}  // namespace fake

#endif  // CORVIS_TESTING_FAKE_RUNTIME_H_
