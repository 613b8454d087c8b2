// The page's process is killed again and again while commands are under way: the runtime loads the page again
// each time, and it listens. A page that never comes up meets an end with one sentence.
#include <sys/wait.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <random>

#include "robustness/stage.h"
#include "service/main_loop.h"

namespace robustness {

using namespace corvis::kit;

namespace {

constexpr int kExitCrashing = 4;

struct Tally {
  int answered = 0;
  int gone = 0;
  std::vector<double> back_ms;
};

void ConverseFor(VoiceService& service, std::chrono::milliseconds time, Tally& tally) {
  const auto start = Clock::now();
  while (Clock::now() - start < time) {
    const Result<Answer> answer = service.Say(kAppId, Custom({{"work", "5"}}), kDeadline);
    Require(AnswerText(answer) == R"({"work":"5"})", "A command was not answered.");
    ++tally.answered;
  }
}

// Kills the page's process `delay` after three commands have been sent, and looks at what became of them.
void KillDuringCommands(VoiceService& service, std::chrono::milliseconds delay, Tally& tally) {
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
  KillDuringCommands(service.voice, std::chrono::milliseconds(random() % 15), tally);
  const auto killed = Clock::now();
  service.WaitForRegistration(round + 2);
  tally.back_ms.push_back(MillisecondsSince(killed));
  while (tv.Evaluate("document.readyState") != R"("complete")") continue;
  Require(tv.Evaluate("state.token") != token, "The page was not loaded again.");
  // Long enough for the runtime to see that this was no crash at start.
  ConverseFor(service.voice, std::chrono::milliseconds(300 + random() % 100), tally);
}

// Runs a page whose process ends whenever it is loaded, and requires the runtime's last word.
int CrashAtStart() {
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

void RunWebProcessCrashes(bool is_short) {
  const int rounds = is_short ? 3 : 100;
  Service service;
  Tally tally;
  {
    Tv tv;
    service.WaitForRegistration(1);
    while (tv.Evaluate("document.readyState") != R"("complete")") continue;
    ConverseFor(service.voice, std::chrono::milliseconds(300), tally);
    std::mt19937 random(1);
    for (int round = 0; round < rounds; ++round) CrashOnce(service, tv, round, random, tally);
  }
  std::sort(tally.back_ms.begin(), tally.back_ms.end());
  std::printf(
      "%d kills, %zu pages listening again after %.0f ms (median; longest %.0f ms); %d commands answered, "
      "%d told as gone with the page, none lost; ",
      rounds, tally.back_ms.size(), tally.back_ms[tally.back_ms.size() / 2], tally.back_ms.back(),
      tally.answered, tally.gone);
  std::fflush(stdout);
  std::printf("a page that crashes at start ends the run after %d crashes\n", CrashAtStart());
}

}  // namespace robustness
