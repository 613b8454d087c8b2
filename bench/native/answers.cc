// Measures answers that don't fit into one message, without a bus: splitting and sending them, and sending
// the same pieces with the split positions known.
#include <benchmark/benchmark.h>

#include <functional>
#include <string>

#include "native/pieces.h"
#include "native/quiet_platform.h"

namespace {

std::string Answer(const benchmark::State& state) {
  std::string answer(static_cast<size_t>(state.range(0)), 'a');
  return answer;
}

bench::Sent SentBy(const std::function<void()>& send) {
  bench::TheSent() = {};
  send();
  return bench::TheSent();
}

// Both must send the same pieces, or the comparison is meaningless.
bool SendTheSame(const std::string& answer, const bench::Pieces& pieces) {
  const bench::Sent ours = SentBy([&] { bench::SendWhole(answer); });
  const bench::Sent against = SentBy([&] { pieces.Send(); });
  return ours.messages == against.messages && ours.bytes == against.bytes;
}

void Cut(benchmark::State& state) {
  bench::StartChannel();
  const std::string answer = Answer(state);
  while (state.KeepRunning()) bench::SendWhole(answer);
}

void KnownCuts(benchmark::State& state) {
  bench::StartChannel();
  const std::string answer = Answer(state);
  const bench::Pieces pieces(answer);
  if (!SendTheSame(answer, pieces)) state.SkipWithError("The pieces are not the channel's.");
  while (state.KeepRunning()) pieces.Send();
}

void Sizes(benchmark::internal::Benchmark* b) {
  b->RangeMultiplier(4)->Range(64 << 10, 16 << 20);
}

}  // namespace

BENCHMARK(Cut)->Name("answer/ours")->Apply(Sizes);
BENCHMARK(KnownCuts)->Name("answer/against")->Apply(Sizes);
