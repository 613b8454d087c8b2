// A runtime for one extension library: loads it, makes pages, and carries texts both ways without keeping
// them.
#ifndef CORVIS_BENCH_PAGE_HOST_H_
#define CORVIS_BENCH_PAGE_HOST_H_

#include <string>

#include "native/quiet_platform.h"
#include "nurvo/runtime.h"

namespace bench {

class PageHost {
 public:
  // Loads the library at `path`. Ends the program with a sentence when it can't be used.
  explicit PageHost(const std::string& path);

  InstanceHandle NewPage() const;
  // A page that handles every action of the exchanges, and listens.
  InstanceHandle NewListeningPage();
  // A synchronous call, {"cmd": ..., "args": ...}.
  void Call(InstanceHandle page, const char* message) const;
  // A command arrives at the library's port.
  void Deliver(bundle* command) const;

  // Bytes that the library posted or replied, to be looked at so that nothing is optimised away.
  static size_t bytes_out();

 private:
  ExtensionHandle extension_ = 0;
  OpenPort port_;
};

}  // namespace bench

#endif  // CORVIS_BENCH_PAGE_HOST_H_
