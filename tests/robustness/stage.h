// What the programs share: a page in the real runtime on the bus of the environment, the voice service in
// this process, and figures of processes.
#ifndef CORVIS_TESTS_ROBUSTNESS_STAGE_H_
#define CORVIS_TESTS_ROBUSTNESS_STAGE_H_

#include <chrono>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "app/runtime_control.h"
#include "service/voice_service.h"
#include "testing/process.h"

namespace robustness {

constexpr const char* kAppId = "com.example.patient";
constexpr auto kDeadline = std::chrono::seconds(20);

// Something did not hold; ends the program.
class Failure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};
void Require(bool holds, const std::string& sentence);

// Each program: `is_short` for a run of seconds. Prints its figures; throws Failure.
void RunLoad(bool is_short);
void RunHostilePeers(bool is_short);
void RunWebProcessCrashes(bool is_short);
void RunDepartures(bool is_short);

// The runtime with the page of this folder.
class Tv {
 public:
  explicit Tv(const char* extension = LIBRARY);
  // Takes leave of the page's process, too.
  ~Tv();
  Tv(const Tv&) = delete;
  Tv& operator=(const Tv&) = delete;

  Process& process() { return process_; }
  // The process that listens for the page; 0 while none does.
  static pid_t WebProcess();
  // An expression's value in the page, as JSON text.
  std::string Evaluate(const std::string& expression);
  corvis::kit::RuntimeControl& control() { return control_; }

 private:
  Process process_;
  corvis::kit::RuntimeControl control_;
};

// The answer's data, or why there is none.
std::string AnswerText(const corvis::kit::Result<corvis::kit::Answer>& answer);

// The voice service, started, with what it told beside the commands.
struct Service {
  Service();
  // Waits for the page's registration number `count`.
  void WaitForRegistration(int count) const;

  std::vector<std::string> notices;
  corvis::kit::VoiceService voice;
};

// A custom command with these entries; its answer is their JSON text unless they ask for another.
corvis::kit::Command Custom(const corvis::kit::Entries& entries);

// Resident memory in KiB, and open descriptors.
struct Usage {
  long memory = 0;
  long descriptors = 0;
};
Usage UsageOf(pid_t process);

double MillisecondsSince(std::chrono::steady_clock::time_point start);

}  // namespace robustness

#endif  // CORVIS_TESTS_ROBUSTNESS_STAGE_H_
