// What the programs share: a page in the real runtime on the bus of the environment, the voice service in
// this process, and figures of processes.
#ifndef CORVIS_TESTS_ROBUSTNESS_STAGE_H_
#define CORVIS_TESTS_ROBUSTNESS_STAGE_H_

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "app/conversation.h"
#include "app/runtime_control.h"
#include "nurvo_desktop/bus.h"
#include "nurvo_desktop/sd_bus_ptr.h"
#include "service/main_loop.h"
#include "service/voice_service.h"
#include "testing/process.h"

namespace robustness {

using namespace corvis::kit;

constexpr const char* kAppId = "com.example.patient";
constexpr auto kDeadline = std::chrono::seconds(20);

// Each program: `is_short` for a run of seconds. Prints its figures; throws when something does not hold.
void RunLoad(bool is_short);
void RunHostilePeers(bool is_short);
void RunWebProcessCrashes(bool is_short);
void RunDepartures(bool is_short);

inline void Require(bool holds, const std::string& sentence) {
  if (!holds) throw std::runtime_error(sentence);
}

inline void RequireSuccess(const Status& status) {
  Require(status.has_value(), status ? "" : status.error().message);
}

// The runtime with the page of this folder.
class Tv {
 public:
  Tv()
      : process_({TV_PROGRAM, "--app-id", kAppId, "--extension", LIBRARY, "--headless", "--console", "none",
                  "--privilege", PrivilegeUri("microphone"), "--privilege", PrivilegeUri("voicecontrol"),
                  PAGE}),
        control_(kAppId) {}
  // Killed without a word it would leave its display and its folder.
  ~Tv() {
    process_.Signal(SIGTERM);
    while (!process_.ReadLine().empty()) continue;
  }
  Tv(const Tv&) = delete;
  Tv& operator=(const Tv&) = delete;

  Process& process() { return process_; }
  RuntimeControl& control() { return control_; }
  // An expression's value in the page, as JSON text.
  std::string Evaluate(const std::string& expression) {
    const Result<std::string> result = control_.Evaluate(expression);
    Require(result.has_value(), "The page can't be asked: " + (result ? "" : result.error().message));
    return *result;
  }
  void WaitForLoad() {
    while (Evaluate("document.readyState") != R"("complete")") continue;
  }
  // The process that listens for the page; 0 while none does.
  static pid_t WebProcess() {
    sd_bus_creds* credentials = nullptr;
    pid_t pid = 0;
    if (sd_bus_get_name_creds(nurvo_bus(), kAppId, SD_BUS_CREDS_PID, &credentials) >= 0)
      sd_bus_creds_get_pid(credentials, &pid);
    const nurvo::CredsPtr owner(credentials);
    return pid;
  }

 private:
  Process process_;
  RuntimeControl control_;
};

// A custom command with these entries; its answer is their JSON text unless they ask for another.
inline Command Custom(const Entries& entries) {
  return {"ACTION_CUSTOM", "", entries, true};
}

// The answer's data, or why there is none.
inline std::string AnswerText(const Result<Answer>& answer) {
  return answer ? answer->data : answer.error().message;
}

// The voice service, started, with what it reported beside the commands.
struct Service {
  Service() : voice([this](const std::string& sentence) { notices.push_back(sentence); }) {
    RequireSuccess(voice.Start());
  }
  // Waits for the page's registration number `count`.
  void WaitForRegistration(int count) const {
    const auto has_come = [&] { return voice.HasApp(kAppId) && voice.registrations(kAppId) >= count; };
    Require(WaitUntil(has_come, kDeadline),
            "The page did not register for the " + std::to_string(count) + ". time within 20 s.");
  }
  // Sends a command that is answered with its one entry.
  void Converse(const std::string& key, const std::string& value) {
    const std::string expected = R"({")" + key + R"(":")" + value + R"("})";
    const std::string answer = AnswerText(voice.Say(kAppId, Custom({{key, value}}), kDeadline));
    Require(answer == expected, "Instead of " + expected + " came " + answer.substr(0, 80));
  }

  std::vector<std::string> notices;
  VoiceService voice;
};

// Resident memory in KiB, and open descriptors.
struct Usage {
  explicit Usage(pid_t process) {
    const std::string folder = "/proc/" + std::to_string(process);
    std::ifstream status(folder + "/status");
    for (std::string word; status >> word;) {
      if (word == "VmRSS:") status >> memory;
    }
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(folder + "/fd"))
      ++descriptors;
  }
  // The engine opens a few, once, some seconds after its start, to watch the system's memory.
  void RequireFewMoreDescriptors(const Usage& before) const {
    constexpr long kFew = 10;
    Require(descriptors <= before.descriptors + kFew, "Descriptors stay open.");
  }

  long memory = 0;
  long descriptors = 0;
};

inline double MillisecondsSince(Clock::time_point start) {
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

}  // namespace robustness

#endif  // CORVIS_TESTS_ROBUSTNESS_STAGE_H_
