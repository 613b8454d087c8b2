// A command's bundle made into JSON, beside copying the same bytes once into a string, entry by entry.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

#include "nurvo/bundle.h"
#include "voice-interaction/bundle_json.h"
#include "voice-interaction/platform_ptr.h"

namespace {

using extension::voice_interaction::BundlePtr;

struct Text {
  std::string key;
  std::string value;
};

// Keys and values as a search has them.
std::vector<Text> MakeTexts(size_t count) {
  std::vector<Text> texts;
  for (size_t i = 0; i < count; ++i) {
    const std::string number = std::to_string(i);
    texts.push_back({"term_" + number, "a value of ordinary length, number " + number});
  }
  return texts;
}

std::string Encode(const std::vector<Text>& texts) {
  const BundlePtr entries(bundle_create());
  for (const Text& text : texts) bundle_add(entries.get(), text.key.c_str(), text.value.c_str());
  bundle_raw* encoded = nullptr;
  int length = 0;
  bundle_encode(entries.get(), &encoded, &length);
  const extension::voice_interaction::PlatformMemory<bundle_raw> owner(encoded);
  return {reinterpret_cast<const char*>(encoded), static_cast<size_t>(length)};
}

void Convert(benchmark::State& state) {
  const std::string encoded = Encode(MakeTexts(static_cast<size_t>(state.range(0))));
  while (state.KeepRunning()) {
    benchmark::DoNotOptimize(extension::voice_interaction::BuildJsonObjectFromBundle(encoded.c_str()));
  }
}

void Decode(benchmark::State& state) {
  const std::string encoded = Encode(MakeTexts(static_cast<size_t>(state.range(0))));
  while (state.KeepRunning()) {
    const BundlePtr entries(
        bundle_decode(reinterpret_cast<const bundle_raw*>(encoded.data()), static_cast<int>(encoded.size())));
    benchmark::DoNotOptimize(entries.get());
  }
}

void Copy(benchmark::State& state) {
  const std::vector<Text> texts = MakeTexts(static_cast<size_t>(state.range(0)));
  while (state.KeepRunning()) {
    std::string json = "{";
    for (const Text& text : texts) {
      json.append("\"").append(text.key).append("\":\"").append(text.value).append("\",");
    }
    json.back() = '}';
    benchmark::DoNotOptimize(json.data());
  }
}

void Counts(benchmark::internal::Benchmark* b) {
  b->RangeMultiplier(4)->Range(4, 1024);
}

}  // namespace

BENCHMARK(Convert)->Name("bundle/ours")->Apply(Counts);
BENCHMARK(Decode)->Name("bundle/decode")->Apply(Counts);
BENCHMARK(Copy)->Name("bundle/against")->Apply(Counts);
