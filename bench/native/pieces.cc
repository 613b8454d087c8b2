// Sends a long answer through the channel, or as prepared pieces.
#include "native/pieces.h"

#include "nurvo/message_port.h"
#include "voice-interaction/platform_ptr.h"
#include "voice-interaction/voice_interaction_channel.h"

namespace bench {

namespace {

using extension::voice_interaction::BundlePtr;
using extension::voice_interaction::VoiceInteractionChannel;

constexpr const char* kVersion = "1.0.8";
constexpr int kMaxEncodedLength = 12288;

BundlePtr MakePiece(const std::string& text, const std::string& total) {
  BundlePtr message(bundle_create());
  bundle_add(message.get(), "command", "partial_result");
  bundle_add(message.get(), "strData", text.c_str());
  bundle_add(message.get(), "totalDataLength", total.c_str());
  bundle_add(message.get(), "sdkVersion", kVersion);
  return message;
}

bool Fits(bundle* message) {
  bundle_raw* encoded = nullptr;
  int length = 0;
  bundle_encode(message, &encoded, &length);
  const extension::voice_interaction::PlatformMemory<bundle_raw> owner(encoded);
  return length <= kMaxEncodedLength;
}

}  // namespace

void StartChannel() {
  VoiceInteractionChannel::Init([](const std::string&, const std::string&, void*) {}, "com.example.bench",
                                kVersion, nullptr);
}

void SendWhole(const std::string& answer) {
  VoiceInteractionChannel::Send("result", answer);
}

Pieces::Pieces(const std::string& answer) : total_(std::to_string(answer.size())) {
  Cut(answer);
}

void Pieces::Cut(const std::string& text) {
  if (Fits(MakePiece(text, total_).get())) {
    texts_.push_back(text);
    return;
  }
  constexpr size_t kAlignment = 12;
  const size_t half = text.size() / 2;
  const size_t cut = half - half % kAlignment;
  Cut(text.substr(0, cut));
  Cut(text.substr(cut));
}

void Pieces::Send() const {
  for (const std::string& text : texts_) {
    message_port_send_message(kServiceId, kServicePort, MakePiece(text, total_).get());
  }
}

}  // namespace bench
