// Measures the round trip of a command from the service to the page and of its answer back, alternately with
// a bare echo of messages of the same sizes. Prints microseconds as JSON:
//   bench_round_trip APP-ID COMMANDS
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "native/echo_bus.h"
#include "native/numbers.h"
#include "service/bundles.h"
#include "service/main_loop.h"
#include "service/voice_service.h"
#include "service/wire.h"

namespace {

namespace voice = corvis::kit;
using Seconds = std::chrono::seconds;

template <typename Action>
double TimeOf(Action&& action) {
  const double start = bench::Microseconds(CLOCK_MONOTONIC);
  action();
  return bench::Microseconds(CLOCK_MONOTONIC) - start;
}

[[noreturn]] void Fail(const std::string& sentence) {
  std::fprintf(stderr, "bench_round_trip: %s\n", sentence.c_str());
  std::exit(1);
}

class EchoCaller {
 public:
  EchoCaller() : bus_(bench::OpenEchoBus(bench::kEchoCaller, OnDelivery, &has_come_)) {}

  void Say(const std::string& payload, unsigned wanted) {
    has_come_ = false;
    bench::SendEcho(bus_, bench::kEchoPeer, wanted, payload);
    while (!has_come_) bench::Turn(bus_);
  }

 private:
  static int OnDelivery(sd_bus_message* /*message*/, void* has_come, sd_bus_error* /*error*/) {
    *static_cast<bool*>(has_come) = true;
    return 1;
  }

  bool has_come_ = false;
  sd_bus* bus_;
};

void SayCommand(voice::VoiceService& service, const std::string& app_id) {
  const auto answer = service.Say(app_id, {"ACTION_PLAY", "", {}, false}, Seconds(10));
  const std::string text = answer ? answer->data : answer.error().message;
  if (text != "success") Fail("Expected success, not " + text + ".");
}

}  // namespace

int main(int count, char** arguments) {
  const int commands = count == 3 ? std::atoi(arguments[2]) : 0;
  if (commands <= 0) Fail("Usage: bench_round_trip APP-ID COMMANDS");
  const std::string app_id = arguments[1];
  voice::VoiceService service([](const std::string& sentence) { Fail(sentence); });
  if (const auto started = service.Start(); !started) Fail(started.error().message);
  if (!voice::WaitUntil([&] { return service.HasApp(app_id); }, Seconds(30)))
    Fail("The page has not called listen().");

  EchoCaller echo;
  namespace wire = voice::wire;
  const std::string out = voice::EncodeEntries({{wire::kCommandKey, "ACTION_PLAY"}, {wire::kDataKey, ""}});
  const auto back = voice::EncodeEntries(
      {{wire::kCommandKey, wire::kResult}, {wire::kDataKey, "success"}, {"sdkVersion", "1.0.8"}});
  std::vector<double> ours;
  std::vector<double> against;
  constexpr int kWarmUps = 100;
  for (int i = -kWarmUps; i < commands; ++i) {
    const double command_time = TimeOf([&] { SayCommand(service, app_id); });
    const double echo_time = TimeOf([&] { echo.Say(out, static_cast<unsigned>(back.size())); });
    if (i < 0) continue;
    ours.push_back(command_time);
    against.push_back(echo_time);
  }
  bench::PrintJson({{"ours", ours}, {"against", against}});
  return 0;
}
