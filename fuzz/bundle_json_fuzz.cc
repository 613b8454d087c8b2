// Fuzzes both conversions of a command's data: the result is always one JSON object.
#include "page.h"
#include "testing/signed_bundle.h"
#include "voice-interaction/bundle_json.h"

namespace {

void Convert(const std::string& text) {
  using namespace extension::voice_interaction;
  for (const auto build : {BuildJsonObjectFromBundle, BuildJsonSearchTermFromBundle}) {
    const std::string json = build(text.c_str());
    Require(json.size() >= 2 && json.front() == '{' && json.back() == '}', "the result is a pair of braces");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  Convert(FuzzText(data, size));
  Convert(SignedBundle(data, size));
  return 0;
}
