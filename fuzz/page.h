// A page that has registered every kind of action and listens, on the platform's stand-in without a bus.
#ifndef CORVIS_FUZZ_PAGE_H_
#define CORVIS_FUZZ_PAGE_H_

#include <cstdlib>
#include <string>

#include "require.h"
#include "testing/fake/fake_runtime.h"

struct FuzzPage {
  fake::Runtime& runtime;
  InstanceHandle page;
};

// The page of this process, made at the first call.
inline FuzzPage& TheFuzzPage() {
  static FuzzPage* const page = [] {
    // Nobody answers there, so that sending fails at once.
    setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent", 1);
    auto* const runtime = new fake::Runtime;
    constexpr const char* kActions =
        R"("ACTION_PLAY","ACTION_SEARCH","ACTION_CUSTOM","ACTION_ITEM_SELECTION")";
    return new FuzzPage{*runtime, runtime->NewListeningPage(kActions)};
  }();
  return *page;
}

// Requires of a reply that it is one of the kinds that there are.
inline void RequireReply(const std::string& reply) {
  const auto has = [&reply](const char* part) { return reply.find(part) != std::string::npos; };
  Require(has(R"("status":"success")") || has(R"("status":"error")"), "every call gets one reply");
}

#endif  // CORVIS_FUZZ_PAGE_H_
