// A runtime for one extension library: loads it, creates pages, and passes messages in both directions
// without storing them.
#ifndef CORVIS_BENCH_PAGE_HOST_H_
#define CORVIS_BENCH_PAGE_HOST_H_

#include <string>

#include "native/quiet_platform.h"
#include "nurvo/runtime.h"

namespace bench {

class PageHost {
 public:
  // Loads the library at `path`. Exits the program with an error message if it can't be used.
  explicit PageHost(const std::string& path);

  InstanceHandle NewPage() const;
  // Creates a page that handles every action of the exchanges, and listens.
  InstanceHandle NewListeningPage();
  // Makes a synchronous call, {"cmd": ..., "args": ...}.
  void Call(InstanceHandle page, const char* message) const;
  // Delivers a command to the library's port.
  void Deliver(bundle* command) const;

  // The bytes that the library has posted or replied. Read it so that nothing is optimized away.
  static size_t bytes_out();

 private:
  ExtensionHandle extension_ = 0;
  OpenPort port_;
};

}  // namespace bench

#endif  // CORVIS_BENCH_PAGE_HOST_H_
