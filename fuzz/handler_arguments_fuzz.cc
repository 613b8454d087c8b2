// The arguments of setCallback and Response, whatever their text.
#include "page.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzPage& fuzz = TheFuzzPage();
  for (const char* handler : {"VoiceInteractionHandler_setCallback", "Response"}) {
    RequireReply(fuzz.runtime.Call(fuzz.page, handler, FuzzText(data, size)));
  }
  return 0;
}
