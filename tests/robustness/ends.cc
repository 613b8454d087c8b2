// However an application ends, the service knows within a second; and when the page's process is killed again
// and again while commands are under way, the runtime loads the page again each time, and it listens.
#include <sys/wait.h>

#include <algorithm>
#include <csignal>
#include <random>

#include "robustness/stage.h"

namespace robustness {

namespace {

using std::chrono::milliseconds;

struct Way {
  const char* name;
  void (*end)(Tv& tv);
};

constexpr Way kWays[] = {
    {"closed", [](Tv& tv) { RequireSuccess(tv.control().Quit()); }},
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

struct Tally {
  int answered = 0;
  int gone = 0;
  std::vector<double> back_ms;
};

void ConverseFor(Service& service, milliseconds time, Tally& tally) {
  for (const auto start = Clock::now(); Clock::now() - start < time; ++tally.answered)
    service.Converse("work", "5");
}

// Kills the page's process `delay` after three commands have been sent, and looks at what became of them.
void KillDuringCommands(VoiceService& service, milliseconds delay, Tally& tally) {
  const pid_t process = Tv::WebProcess();
  Require(process > 0, "No process listens.");
  uint64_t ids[3];
  for (uint64_t& id : ids) id = service.Send(kAppId, Custom({{"work", "5"}})).value_or(0);
  WaitUntil([] { return false; }, delay);
  kill(process, SIGKILL);
  for (const uint64_t id : ids) {
    // Nothing more comes once it is known to be gone.
    const Result<Answer> answer =
        service.Await(kAppId, id, service.HasApp(kAppId) ? kDeadline : kDeadline * 0);
    const bool is_right = answer ? answer->data == R"({"work":"5"})" : !service.HasApp(kAppId);
    Require(is_right, "A command at the kill: " + AnswerText(answer));
    ++(answer ? tally.answered : tally.gone);
  }
}

void CrashOnce(Service& service, Tv& tv, int round, std::mt19937& random, Tally& tally) {
  const std::string token = tv.Evaluate("state.token");
  KillDuringCommands(service.voice, milliseconds(random() % 15), tally);
  const auto killed = Clock::now();
  service.WaitForRegistration(round + 2);
  tally.back_ms.push_back(MillisecondsSince(killed));
  tv.WaitForLoad();
  Require(tv.Evaluate("state.token") != token, "The page was not loaded again.");
  // Long enough for the runtime to see that this was no crash at start.
  ConverseFor(service, milliseconds(300 + random() % 100), tally);
}

// Runs a page whose process ends whenever it is loaded, and requires the runtime's last word.
int CrashAtStart() {
  constexpr int kExitCrashing = 4;
  Process process({TV_PROGRAM, "--headless", "--extension", CRASHER, PAGE});
  int crashes = 0;
  std::string last;
  for (std::string line = process.ReadLine(); !line.empty(); line = process.ReadLine()) {
    if (line.find("The page's process crashed;") != std::string::npos) ++crashes;
    last = line;
  }
  siginfo_t end{};
  waitid(P_PID, static_cast<id_t>(process.pid()), &end, WEXITED | WNOWAIT);
  Require(end.si_status == kExitCrashing && last.find("times in a row") != std::string::npos,
          "A page that crashes at start ended with " + std::to_string(end.si_status) + ": " + last);
  return crashes;
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
    Require(longest < 1000, "That is too long.");
  }
  std::printf("\n");
}

void RunWebProcessCrashes(bool is_short) {
  const int rounds = is_short ? 3 : 100;
  Service service;
  Tally tally;
  {
    Tv tv;
    service.WaitForRegistration(1);
    tv.WaitForLoad();
    ConverseFor(service, milliseconds(300), tally);
    std::mt19937 random(1);
    for (int round = 0; round < rounds; ++round) CrashOnce(service, tv, round, random, tally);
  }
  std::sort(tally.back_ms.begin(), tally.back_ms.end());
  std::printf(
      "%d kills, %zu pages listening again after %.0f ms (median; longest %.0f ms); %d commands answered, "
      "%d reported as gone with the page, none lost; a page that crashes at start ends the run after %d "
      "crashes\n",
      rounds, tally.back_ms.size(), tally.back_ms[tally.back_ms.size() / 2], tally.back_ms.back(),
      tally.answered, tally.gone, CrashAtStart());
}

}  // namespace robustness
