// Sends long answers over the bus to another process, alternately split by the channel and with the split
// positions known. Prints JSON: microseconds until the other process has handled all pieces, and the sender's
// processor time.
//   bench_answers_over_bus receive            the other process; runs until it is killed
//   bench_answers_over_bus send BYTES ROUNDS
#include <glib.h>
#include <systemd/sd-bus.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>
#include <vector>

#include "native/numbers.h"
#include "native/pieces.h"
#include "nurvo/message_port.h"
#include "nurvo_desktop/bus.h"

namespace {

[[noreturn]] void Fail(const char* sentence) {
  std::fprintf(stderr, "bench_answers_over_bus: %s\n", sentence);
  std::exit(1);
}

int Receive() {
  setenv("NURVO_APP_ID", bench::kServiceId, 1);
  const auto ignore = [](int, const char*, const char*, bool, bundle*, void*) {};
  if (message_port_register_local_port(bench::kServicePort, ignore, nullptr) <= 0) {
    Fail("The port can't be opened.");
  }
  for (;;) g_main_context_iteration(nullptr, TRUE);
}

// Waits until the other process has handled everything sent so far: it handles messages in order and answers
// this one.
bool HasReceived() {
  return sd_bus_call_method(nurvo_bus(), bench::kServiceId, "/", "org.freedesktop.DBus.Peer", "Ping", nullptr,
                            nullptr, "") >= 0;
}

void WaitForReceiver() {
  constexpr int kTries = 1000;
  constexpr gulong kPauseMicroseconds = 10000;
  for (int i = 0; i < kTries && !HasReceived(); ++i) g_usleep(kPauseMicroseconds);
}

struct Times {
  std::vector<double> elapsed;
  std::vector<double> processor;

  template <typename Action>
  void Add(Action&& send) {
    const double start = bench::Microseconds(CLOCK_MONOTONIC);
    const double processor_start = bench::Microseconds(CLOCK_PROCESS_CPUTIME_ID);
    send();
    if (!HasReceived()) Fail("The receiver does not answer; start it first.");
    elapsed.push_back(bench::Microseconds(CLOCK_MONOTONIC) - start);
    processor.push_back(bench::Microseconds(CLOCK_PROCESS_CPUTIME_ID) - processor_start);
  }
};

int Send(size_t bytes, int rounds) {
  setenv("NURVO_APP_ID", "com.example.bench", 1);
  WaitForReceiver();
  bench::StartChannel();
  const std::string answer(bytes, 'a');
  const bench::Pieces pieces(answer);
  Times ours;
  Times against;
  for (int i = 0; i < rounds; ++i) {
    ours.Add([&] { bench::SendWhole(answer); });
    against.Add([&] { pieces.Send(); });
  }
  bench::PrintJson({{"ours", ours.elapsed},
                    {"against", against.elapsed},
                    {"oursProcessor", ours.processor},
                    {"againstProcessor", against.processor}});
  return 0;
}

}  // namespace

int main(int count, char** arguments) {
  if (count == 2 && std::strcmp(arguments[1], "receive") == 0) return Receive();
  if (count != 4) Fail("Usage: bench_answers_over_bus receive | send BYTES ROUNDS");
  return Send(std::strtoul(arguments[2], nullptr, 10), std::atoi(arguments[3]));
}
