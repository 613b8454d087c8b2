// Fuzzes the arguments of setCallback and Response.
#include "page.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzPage& fuzz = TheFuzzPage();
  for (const char* handler : {"VoiceInteractionHandler_setCallback", "Response"}) {
    RequireReply(fuzz.runtime.Call(fuzz.page, handler, FuzzText(data, size)));
  }
  return 0;
}
