// corvis-voice: the TV's voice service for a desktop.
#include <clocale>
#include <cstdio>
#include <memory>
#include <variant>

#include "app/console.h"
#include "app/line_source.h"
#include "app/options.h"
#include "app/script_run.h"
#include "run/conversation.h"
#include "service/main_loop.h"
#include "service/voice_service.h"

namespace corvis::voice {

namespace {

constexpr auto kRegistrationTimeout = std::chrono::seconds(20);

int Fail(int status, const std::string& sentence) {
  std::fprintf(stderr, "corvis-voice: %s\n", sentence.c_str());
  return status;
}

int InterruptedStatus() {
  return IsTimeOver() ? kExitTimeOver : kExitInterrupted;
}

int RunPrompt(const Options& options) {
  const std::unique_ptr<LineSource> lines = LineSource::Open(Console::CompletionWords());
  VoiceService service([&lines](const std::string& sentence) { lines->Show(sentence); });
  const std::string problem = service.Start();
  if (!problem.empty()) return Fail(kExitNoBus, problem);
  EndWaitsOnSignals();
  Conversation conversation(service, options.app_id, options.timeout);
  const std::string absence = conversation.WaitForApp(kRegistrationTimeout);
  if (IsInterrupted()) return kExitInterrupted;
  if (!absence.empty()) lines->Show(absence);
  Console(conversation, *lines).Run();
  return IsInterrupted() ? kExitInterrupted : kExitOk;
}

int RunScripts(const Options& options) {
  std::vector<VoiceScript> scripts;
  if (!ReadScripts(options.scripts, scripts)) return kExitUsage;
  if (options.is_check_only) return kExitOk;
  ScriptRun run(options, scripts);
  VoiceService service([](const std::string& sentence) { std::fprintf(stderr, "%s\n", sentence.c_str()); });
  const std::string problem = service.Start();
  if (!problem.empty()) return run.Abort(kExitNoBus, problem);
  EndWaitsOnSignals();
  EndWaitsAfter(options.total_timeout);
  Conversation conversation(service, options.app_id, options.timeout);
  const std::string absence = conversation.WaitForApp(kRegistrationTimeout);
  if (IsInterrupted())
    return run.Abort(InterruptedStatus(), "The run ended before the application listened.");
  return absence.empty() ? run.Run(conversation) : run.Abort(kExitNoApp, absence);
}

}  // namespace

}  // namespace corvis::voice

int main(int argc, char** argv) {
  std::setlocale(LC_ALL, "");
  std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
  const auto parsed = corvis::voice::ParseOptions(argc, argv);
  if (const auto* exit = std::get_if<corvis::voice::Exit>(&parsed)) {
    std::fputs(exit->text.c_str(), exit->status == corvis::voice::kExitOk ? stdout : stderr);
    return exit->status;
  }
  const auto& options = std::get<corvis::voice::Options>(parsed);
  return options.scripts.empty() ? corvis::voice::RunPrompt(options) : corvis::voice::RunScripts(options);
}
