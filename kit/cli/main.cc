// corvis-voice: the TV's voice service for a desktop.
#include <clocale>
#include <cstdio>
#include <exception>
#include <memory>
#include <variant>

#include "app/conversation.h"
#include "cli/line_source.h"
#include "cli/looks.h"
#include "cli/options.h"
#include "cli/prompt.h"
#include "cli/test_app.h"
#include "service/main_loop.h"
#include "service/voice_service.h"

namespace corvis::kit {

namespace {

// Loading a page and its engine takes longer than an answer.
constexpr int kRegistrationFactor = 4;

int Fail(int status, const std::string& sentence) {
  std::fprintf(stderr, "corvis-voice: %s\n", sentence.c_str());
  return status;
}

int InterruptedStatus() {
  return IsTimeOver() ? kExitTimeOver : kExitInterrupted;
}

// One look at the page that the runtime shows.
int RunLook(const Options& options, int (*look)(Conversation& conversation, const Options& options)) {
  VoiceService service([](const std::string& sentence) { std::fprintf(stderr, "%s\n", sentence.c_str()); });
  if (const Status started = service.Start(); !started) return Fail(kExitNoBus, started.error().message);
  EndWaitsOnSignals();
  Conversation conversation(service, options.app_id, options.timeout);
  const Status arrived = conversation.WaitForApp(options.timeout);
  if (IsInterrupted()) return kExitInterrupted;
  if (!arrived && options.job == Job::kItems) return Fail(kExitNoApp, arrived.error().message);
  return look(conversation, options);
}

int RunPrompt(const Options& options) {
  const std::unique_ptr<LineSource> lines = LineSource::Open(Console::CompletionWords());
  VoiceService service([&lines](const std::string& sentence) { lines->Show(sentence); });
  if (const Status started = service.Start(); !started) return Fail(kExitNoBus, started.error().message);
  EndWaitsOnSignals();
  Conversation conversation(service, options.app_id, options.timeout);
  const Status arrived = conversation.WaitForApp(options.timeout * kRegistrationFactor);
  if (IsInterrupted()) return kExitInterrupted;
  if (!arrived) lines->Show(arrived.error().message);
  Console(conversation, *lines).Run();
  return IsInterrupted() ? kExitInterrupted : kExitOk;
}

int RunScripts(const Options& options) {
  std::vector<VoiceScript> scripts;
  if (!ReadScripts(options.scripts, scripts)) return kExitUsage;
  if (options.is_check_only) return kExitOk;
  ScriptRun run(options, scripts);
  VoiceService service([](const std::string& sentence) { std::fprintf(stderr, "%s\n", sentence.c_str()); });
  if (const Status started = service.Start(); !started) return run.Abort(kExitNoBus, started.error().message);
  EndWaitsOnSignals();
  EndWaitsAfter(options.total_timeout);
  Conversation conversation(service, options.app_id, options.timeout);
  const Status arrived = conversation.WaitForApp(options.timeout * kRegistrationFactor);
  if (IsInterrupted())
    return run.Abort(InterruptedStatus(), "The run ended before the application listened.");
  return arrived ? run.Run(conversation) : run.Abort(kExitNoApp, arrived.error().message);
}

int Run(const Options& options) {
  switch (options.job) {
    case Job::kPrompt:
      return RunPrompt(options);
    case Job::kScripts:
      return RunScripts(options);
    case Job::kItems:
      return RunLook(options, ShowItems);
    case Job::kLint:
      return RunLook(options, ShowFindings);
  }
  return kExitUsage;
}

}  // namespace

}  // namespace corvis::kit

int main(int argc, char** argv) {
  using corvis::kit::Exit;
  std::setlocale(LC_ALL, "");
  std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
  try {
    const auto parsed = corvis::kit::ParseOptions(argc, argv);
    if (const auto* exit = std::get_if<Exit>(&parsed)) {
      std::fputs(exit->text.c_str(), exit->status == corvis::kit::kExitOk ? stdout : stderr);
      return exit->status;
    }
    return corvis::kit::Run(std::get<corvis::kit::Options>(parsed));
  } catch (const std::exception& error) {
    std::fprintf(stderr, "corvis-voice: %s\n", error.what());
    return corvis::kit::kExitFailed;
  }
}
