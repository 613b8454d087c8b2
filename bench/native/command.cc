// Sends commands to a library and answers them, to be run under an instruction counter:
//   bench_command LIBRARY.so ROUNDS
// Prints the messages, the bytes sent, and the bytes posted and replied, so that two libraries can be checked
// for doing the same work.
#include <cstdio>
#include <cstdlib>

#include "native/exchanges.h"
#include "native/page_host.h"

int main(int count, char** arguments) {
  if (count != 3) {
    std::fputs("Usage: bench_command LIBRARY.so ROUNDS\n", stderr);
    return 2;
  }
  bench::PageHost host(arguments[1]);
  const InstanceHandle page = host.NewListeningPage();
  bench::TheSent() = {};
  const size_t before = bench::PageHost::bytes_out();
  bench::Play(host, page, bench::MakeExchanges(), std::atoi(arguments[2]));
  const bench::Sent& sent = bench::TheSent();
  std::printf("%zu %zu %zu\n", sent.messages, sent.bytes, bench::PageHost::bytes_out() - before);
  return 0;
}
