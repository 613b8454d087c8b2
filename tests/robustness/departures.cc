// However an application ends, the service knows within a second.
#include <algorithm>
#include <csignal>
#include <cstdio>
#include <memory>

#include "robustness/stage.h"
#include "service/main_loop.h"

namespace robustness {

using namespace corvis::kit;

namespace {

constexpr double kLongestMs = 1000;

struct Way {
  const char* name;
  void (*end)(Tv& tv);
};

constexpr Way kWays[] = {
    {"closed", [](Tv& tv) { Require(tv.control().Quit().has_value(), "The runtime does not end."); }},
    {"page crashed", [](Tv& /*tv*/) { kill(Tv::WebProcess(), SIGABRT); }},
    {"page killed", [](Tv& /*tv*/) { kill(Tv::WebProcess(), SIGKILL); }},
    {"runtime ended", [](Tv& tv) { tv.process().Signal(SIGTERM); }},
    {"runtime killed", [](Tv& tv) { tv.process().Signal(SIGKILL); }},
};

// How long it takes from the end of an application to the service's notice.
double TimeUntilNoticed(Service& service, const Way& way) {
  Tv tv;
  service.WaitForRegistration(service.voice.registrations(kAppId) + 1);
  const auto start = Clock::now();
  way.end(tv);
  const bool is_noticed = WaitUntil([&] { return !service.voice.HasApp(kAppId); }, kDeadline);
  Require(is_noticed, std::string("It was not noticed that the application was ") + way.name + ".");
  return MillisecondsSince(start);
}

}  // namespace

void RunDepartures(bool is_short) {
  const int rounds = is_short ? 1 : 20;
  Service service;
  for (const Way& way : kWays) {
    double longest = 0;
    for (int i = 0; i < rounds; ++i) longest = std::max(longest, TimeUntilNoticed(service, way));
    std::printf("%s%s %d times, noticed within %.0f ms", &way == kWays ? "" : "; ", way.name, rounds,
                longest);
    std::fflush(stdout);
    Require(longest < kLongestMs, "That is too long.");
  }
  std::printf("\n");
}

}  // namespace robustness
