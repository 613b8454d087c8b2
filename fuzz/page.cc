// The page that the fuzz targets share.
#include "page.h"

#include <cstdlib>

FuzzPage& TheFuzzPage() {
  static FuzzPage* const page = [] {
    // No bus listens there, so sending fails at once.
    setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent", 1);
    auto* const runtime = new fake::Runtime;
    return new FuzzPage{*runtime,
                        runtime->NewListeningPage(
                            R"("ACTION_PLAY","ACTION_SEARCH","ACTION_CUSTOM","ACTION_ITEM_SELECTION")")};
  }();
  return *page;
}

void RequireReply(const std::string& reply) {
  const bool is_reply = reply.find(R"("status":"success")") != std::string::npos ||
                        reply.find(R"("status":"error")") != std::string::npos;
  Require(is_reply, "every call gets one reply");
}
