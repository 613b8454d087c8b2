// corvis-voice: the TV's voice service for a desktop.
#include <clocale>
#include <cstdio>
#include <fstream>
#include <memory>
#include <sstream>
#include <variant>

#include "app/console.h"
#include "app/line_source.h"
#include "app/options.h"
#include "report/narrator.h"
#include "run/conversation.h"
#include "run/script_runner.h"
#include "script/voice_script.h"
#include "service/main_loop.h"
#include "service/voice_service.h"

namespace corvis::voice {

namespace {

constexpr auto kRegistrationTimeout = std::chrono::seconds(20);

int Fail(int status, const std::string& sentence) {
  std::fprintf(stderr, "corvis-voice: %s\n", sentence.c_str());
  return status;
}

// Reads all scripts before anything runs, and prints every error that is in them.
bool ReadScripts(const std::vector<std::string>& files, std::vector<VoiceScript>& scripts) {
  bool is_ok = true;
  for (const std::string& file : files) {
    std::ifstream stream(file, std::ios::binary);
    std::ostringstream text;
    if (!stream || !(text << stream.rdbuf())) {
      Fail(kExitUsage, "The script " + file + " can't be read, or is empty.");
      is_ok = false;
      continue;
    }
    scripts.push_back(ParseVoiceScript(text.str(), file));
    for (const ScriptError& error : scripts.back().errors) {
      std::fprintf(stderr, "%s\n", Located(file, error.place, error.sentence).c_str());
      is_ok = false;
    }
  }
  return is_ok;
}

int RunScripts(const Options& options, const std::vector<VoiceScript>& scripts, Conversation& conversation) {
  Narrator narrator(stdout);
  std::vector<Reporter*> reporters = {&narrator};
  ScriptRunner runner(conversation, reporters, Clock::now() + options.total_timeout);
  for (const VoiceScript& script : scripts) runner.Run(script);
  for (Reporter* reporter : reporters) reporter->OnEnd();
  if (IsInterrupted()) return kExitInterrupted;
  return runner.totals().failed == 0 ? kExitOk : kExitFailed;
}

int Run(const Options& options) {
  std::vector<VoiceScript> scripts;
  if (!ReadScripts(options.scripts, scripts)) return kExitUsage;
  std::unique_ptr<LineSource> lines;
  if (scripts.empty()) lines = LineSource::Open(Console::CompletionWords());
  VoiceService service([&lines](const std::string& sentence) {
    if (lines) {
      lines->Show(sentence);
    } else {
      std::fprintf(stderr, "%s\n", sentence.c_str());
    }
  });
  const std::string problem = service.Start();
  if (!problem.empty()) return Fail(kExitNoBus, problem);
  EndWaitsOnSignals();
  Conversation conversation(service, options.app_id, options.timeout);
  const std::string absence = conversation.WaitForApp(kRegistrationTimeout);
  if (IsInterrupted()) return kExitInterrupted;
  if (!absence.empty()) {
    if (!lines) return Fail(kExitNoApp, absence);
    lines->Show(absence);
  }
  if (!lines) return RunScripts(options, scripts, conversation);
  Console(conversation, *lines).Run();
  return IsInterrupted() ? kExitInterrupted : kExitOk;
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
  return corvis::voice::Run(std::get<corvis::voice::Options>(parsed));
}
