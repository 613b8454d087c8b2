// Commands through the library with its logging switched off, and through the same library without its log
// calls:
//   bench_logging LIBRARY.so UNLOGGED.so [options of Google Benchmark]
#include <benchmark/benchmark.h>

#include <cstdio>

#include "native/exchanges.h"
#include "native/page_host.h"

namespace {

void Register(const char* name, const char* path, const std::vector<bench::Exchange>& exchanges) {
  auto* const host = new bench::PageHost(path);  // a library stays loaded to the end
  const InstanceHandle page = host->NewListeningPage();
  benchmark::RegisterBenchmark(name, [host, page, &exchanges](benchmark::State& state) {
    for (auto _ : state) bench::Play(*host, page, exchanges, 1);
  });
}

}  // namespace

int main(int count, char** arguments) {
  if (count < 3) {
    std::fputs("Usage: bench_logging LIBRARY.so UNLOGGED.so [options of Google Benchmark]\n", stderr);
    return 2;
  }
  const std::vector<bench::Exchange> exchanges = bench::MakeExchanges();
  Register("ours", arguments[1], exchanges);
  Register("against", arguments[2], exchanges);
  count -= 2;
  arguments[2] = arguments[0];
  arguments += 2;
  benchmark::Initialize(&count, arguments);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
