// Fuzzes a page's synchronous calls.
#include "page.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzPage& fuzz = TheFuzzPage();
  RequireReply(fuzz.runtime.CallRaw(fuzz.page, FuzzText(data, size)));
  return 0;
}
