// Fuzzes messages that arrive at the port: encoded bundles, which the channel parses and posts to the page.
#include "nurvo_desktop/bundle_ptr.h"
#include "page.h"
#include "testing/signed_bundle.h"
#include "voice-interaction/voice_interaction_channel.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzPage& fuzz = TheFuzzPage();
  const std::string text = SignedBundle(data, size);
  const auto* raw = reinterpret_cast<const bundle_raw*>(text.data());
  const nurvo::BundlePtr message(bundle_decode(raw, static_cast<int>(text.size())));
  if (!message) return 0;
  extension::voice_interaction::VoiceInteractionChannel::OnMessageReceived(1, "a", "b", false, message.get(),
                                                                           nullptr);
  Require(fuzz.runtime.TakePosted(fuzz.page).size() <= 1, "a command is posted once");
  return 0;
}
