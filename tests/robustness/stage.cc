// Starting and asking processes.
#include "robustness/stage.h"

#include <filesystem>
#include <fstream>

#include "app/conversation.h"
#include "nurvo_desktop/bus.h"
#include "nurvo_desktop/sd_bus_ptr.h"
#include "service/main_loop.h"

namespace robustness {

using namespace corvis::kit;

void Require(bool holds, const std::string& sentence) {
  if (!holds) throw Failure(sentence);
}

Tv::Tv(const char* extension)
    : process_({TV_PROGRAM, "--app-id", kAppId, "--extension", extension, "--headless", "--console", "none",
                "--privilege", PrivilegeUri("microphone"), "--privilege", PrivilegeUri("voicecontrol"),
                PAGE}),
      control_(kAppId) {}

Tv::~Tv() {
  // Killed without a word it would leave its display and its folder.
  process_.Signal(SIGTERM);
  while (!process_.ReadLine().empty()) continue;
}

pid_t Tv::WebProcess() {
  sd_bus_creds* credentials = nullptr;
  pid_t pid = 0;
  if (sd_bus_get_name_creds(nurvo_bus(), kAppId, SD_BUS_CREDS_PID, &credentials) >= 0)
    sd_bus_creds_get_pid(credentials, &pid);
  const nurvo::CredsPtr owner(credentials);
  return pid;
}

std::string Tv::Evaluate(const std::string& expression) {
  const Result<std::string> result = control_.Evaluate(expression);
  Require(result.has_value(), "The page can't be asked: " + (result ? "" : result.error().message));
  return *result;
}

Service::Service() : voice([this](const std::string& sentence) { notices.push_back(sentence); }) {
  const Status started = voice.Start();
  Require(started.has_value(), started ? "" : started.error().message);
}

std::string AnswerText(const Result<Answer>& answer) {
  return answer ? answer->data : answer.error().message;
}

void Service::WaitForRegistration(int count) const {
  const auto has_come = [&] { return voice.HasApp(kAppId) && voice.registrations(kAppId) >= count; };
  Require(WaitUntil(has_come, kDeadline),
          "The page did not register for the " + std::to_string(count) + ". time within 20 s.");
}

Command Custom(const Entries& entries) {
  return {"ACTION_CUSTOM", "", entries, true};
}

Usage UsageOf(pid_t process) {
  const std::string folder = "/proc/" + std::to_string(process);
  Usage usage;
  std::ifstream status(folder + "/status");
  for (std::string word; status >> word;) {
    if (word == "VmRSS:") status >> usage.memory;
  }
  for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(folder + "/fd"))
    ++usage.descriptors;
  return usage;
}

double MillisecondsSince(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace robustness
