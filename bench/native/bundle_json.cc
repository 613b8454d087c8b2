// Measures converting a command's bundle to JSON, and decoding and visiting the same bundle without writing
// text.
#include <benchmark/benchmark.h>

#include <string>

#include "nurvo/bundle.h"
#include "voice-interaction/bundle_json.h"
#include "voice-interaction/platform_ptr.h"

namespace {

using extension::voice_interaction::BundlePtr;

// Keys and values like those of a search command.
std::string EncodedEntries(benchmark::State& state) {
  const BundlePtr entries(bundle_create());
  for (int i = 0; i < state.range(0); ++i) {
    const std::string number = std::to_string(i);
    const std::string value = "a value of ordinary length, number " + number;
    bundle_add(entries.get(), ("term_" + number).c_str(), value.c_str());
  }
  bundle_raw* encoded = nullptr;
  int length = 0;
  bundle_encode(entries.get(), &encoded, &length);
  const extension::voice_interaction::PlatformMemory<bundle_raw> owner(encoded);
  return {reinterpret_cast<const char*>(encoded), static_cast<size_t>(length)};
}

void Convert(benchmark::State& state) {
  const std::string encoded = EncodedEntries(state);
  while (state.KeepRunning()) {
    benchmark::DoNotOptimize(extension::voice_interaction::BuildJsonObjectFromBundle(encoded.c_str()));
  }
}

BundlePtr Decoded(const std::string& encoded) {
  return BundlePtr(
      bundle_decode(reinterpret_cast<const bundle_raw*>(encoded.data()), static_cast<int>(encoded.size())));
}

void Decode(benchmark::State& state) {
  const std::string encoded = EncodedEntries(state);
  while (state.KeepRunning()) {
    benchmark::DoNotOptimize(Decoded(encoded).get());
  }
}

// Reads the value from a duplicate of the entry, as the interface requires.
void ReadEntry(const char* key, int /*type*/, const bundle_keyval_t* entry, void* /*user_data*/) {
  const extension::voice_interaction::KeyvalPtr copy(bundle_keyval_dup(entry));
  void* value = nullptr;
  size_t size = 0;
  bundle_keyval_get_basic_val(copy.get(), &value, &size);
  benchmark::DoNotOptimize(key);
  benchmark::DoNotOptimize(value);
}

void Visit(benchmark::State& state) {
  const std::string encoded = EncodedEntries(state);
  while (state.KeepRunning()) bundle_foreach(Decoded(encoded).get(), ReadEntry, nullptr);
}

void Counts(benchmark::internal::Benchmark* b) {
  b->RangeMultiplier(4)->Range(4, 1024);
}

}  // namespace

BENCHMARK(Convert)->Name("bundle/ours")->Apply(Counts);
BENCHMARK(Decode)->Name("bundle/decode")->Apply(Counts);
BENCHMARK(Visit)->Name("bundle/against")->Apply(Counts);
