// Measures commands through the library with logging off, and through the same library without its log calls:
//   bench_logging LIBRARY.so UNLOGGED.so [options of Google Benchmark]
#include <benchmark/benchmark.h>

#include <cstdio>
#include <memory>
#include <utility>
#include <vector>

#include "native/exchanges.h"
#include "native/page_host.h"

namespace {

// A library with a page that listens. It stays loaded until the program exits.
struct Contender {
  std::unique_ptr<bench::PageHost> host;
  InstanceHandle page = 0;
};

std::vector<Contender>& Contenders() {
  static std::vector<Contender> contenders;
  return contenders;
}

void Load(const char* path) {
  auto host = std::make_unique<bench::PageHost>(path);
  const InstanceHandle page = host->NewListeningPage();
  Contenders().push_back({std::move(host), page});
}

void Commands(benchmark::State& state) {
  const Contender& contender = Contenders().at(static_cast<size_t>(state.range(0)));
  const std::vector<bench::Exchange> exchanges = bench::MakeExchanges();
  while (state.KeepRunning()) bench::Play(*contender.host, contender.page, exchanges, 1);
}

}  // namespace

// The argument is the library's position on the command line.
BENCHMARK(Commands)->Name("commands")->Arg(0)->Arg(1);

int main(int count, char** arguments) {
  constexpr int kLibraries = 2;
  if (count <= kLibraries) {
    std::fputs("Usage: bench_logging LIBRARY.so UNLOGGED.so [options of Google Benchmark]\n", stderr);
    return 2;
  }
  for (int i = 1; i <= kLibraries; ++i) Load(arguments[i]);
  count -= kLibraries;
  arguments[kLibraries] = arguments[0];
  arguments += kLibraries;
  benchmark::Initialize(&count, arguments);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
