// Reads scripts from standard input and runs them.
#include "cli/worker.h"

#include <glib.h>
#include <sys/prctl.h>

#include <algorithm>
#include <csignal>
#include <iostream>
#include <iterator>
#include <nlohmann/json.hpp>

#include "cli/exit_status.h"
#include "cli/script_player.h"
#include "nurvo_desktop/glib_ptr.h"
#include "output/text_forms.h"
#include "script/script_reader.h"

namespace corvis::kit {

namespace {

using Json = nlohmann::ordered_json;

// The bytes of a script, which need not be valid UTF-8, as JSON carries them.
std::string Encoded(const std::string& bytes) {
  return nurvo::GText(g_base64_encode(reinterpret_cast<const guchar*>(bytes.data()), bytes.size())).get();
}

std::string Decoded(const std::string& text) {
  gsize size = 0;
  const nurvo::Owned<guchar, g_free> bytes(g_base64_decode(text.c_str(), &size));
  return {reinterpret_cast<const char*>(bytes.get()), size};
}

// Blocks, because at the end of an application that a script expected, waits on the main loop are over.
std::optional<VoiceScript> ReadTask(const SpokenLanguage& language) {
  std::string line;
  if (!std::getline(std::cin, line)) return {};
  const Json task = Json::parse(line);
  const auto lines = task.at("lines").get<std::vector<int>>();
  VoiceScript script = ParseVoiceScript(Decoded(task.at("text")), task.at("file"), language);
  const auto is_other = [&lines](const ScriptTest& test) {
    return std::find(lines.begin(), lines.end(), test.place.line) == lines.end();
  };
  script.tests.erase(std::remove_if(script.tests.begin(), script.tests.end(), is_other), script.tests.end());
  return script;
}

}  // namespace

std::string TaskLine(const SelectedScript& selected) {
  Json task = {{"file", selected.script.file}, {"text", Encoded(selected.text)}, {"lines", Json::array()}};
  for (const ScriptTest& test : selected.script.tests) task["lines"].push_back(test.place.line);
  return JsonLine(task) + "\n";
}

Result<int> RunWorker(Supervisor& supervisor, const std::string& application,
                      const ScriptRunOptions& options) {
  // Ends with the other process, however that ends.
  prctl(PR_SET_PDEATHSIG, SIGTERM);
  const Result<SpokenLanguage> language = OpenLanguage(options.application.language);
  if (!language) return Fail(language.error());
  const bool needs_page = NeedsPage(options);
  const auto report =
      needs_page ? MakeDetailedJsonReport(OutputFile::Standard()) : MakeJsonReport(OutputFile::Standard());
  RunningApplication running(supervisor, application, options.application);
  const Status status =
      PlayScripts(running, options, needs_page, *report, [&language] { return ReadTask(*language); });
  if (!status) report->Take(RunAborted{status.error().message});
  const int exit_status = status ? kExitOk : StatusOf(status.error().kind);
  report->Take(RunEnded{exit_status, {}, {}, {}});
  // If the other process no longer reads, there is nobody to tell.
  static_cast<void>(report->Finish());
  return exit_status;
}

}  // namespace corvis::kit
