// Answers that don't fit into one message: cut and sent, beside the same pieces made and sent with the cuts
// known.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "native/quiet_platform.h"
#include "nurvo/bundle.h"
#include "voice-interaction/platform_ptr.h"
#include "voice-interaction/voice_interaction_channel.h"

namespace {

using extension::voice_interaction::BundlePtr;
using extension::voice_interaction::VoiceInteractionChannel;

std::string Answer(const benchmark::State& state) {
  return std::string(static_cast<size_t>(state.range(0)), 'a');
}

void Cut(benchmark::State& state) {
  VoiceInteractionChannel::Init([](const std::string&, const std::string&, void*) {}, "com.example.bench",
                                "1.0.8", nullptr);
  const std::string answer = Answer(state);
  for (auto _ : state) VoiceInteractionChannel::Send("result", answer);
}

// The sizes of the pieces of an answer, in order.
std::vector<size_t> PieceSizes(const std::string& answer) {
  std::vector<size_t> sizes;
  bench::TheSent().observer = [&sizes](bundle* message) {
    char* data = nullptr;
    if (bundle_get_str(message, "strData", &data) == 0) sizes.push_back(std::char_traits<char>::length(data));
  };
  VoiceInteractionChannel::Send("result", answer);
  bench::TheSent().observer = nullptr;
  return sizes;
}

void SendPiece(const char* data, const char* total) {
  const BundlePtr message(bundle_create());
  bundle_add(message.get(), "command", "partial_result");
  bundle_add(message.get(), "strData", data);
  bundle_add(message.get(), "totalDataLength", total);
  bundle_add(message.get(), "sdkVersion", "1.0.8");
  message_port_send_message("com.kelvaro.tv.vif", "com.port.vif.voiceinteraction", message.get());
}

void KnownCuts(benchmark::State& state) {
  const std::string answer = Answer(state);
  const std::string total = std::to_string(answer.size());
  const std::vector<size_t> sizes = PieceSizes(answer);
  for (auto _ : state) {
    size_t at = 0;
    for (const size_t size : sizes) {
      SendPiece(answer.substr(at, size).c_str(), total.c_str());
      at += size;
    }
  }
}

void Sizes(benchmark::internal::Benchmark* b) {
  b->RangeMultiplier(4)->Range(64 << 10, 16 << 20);
}

}  // namespace

BENCHMARK(Cut)->Name("answer/ours")->Apply(Sizes);
BENCHMARK(KnownCuts)->Name("answer/against")->Apply(Sizes);
