// The run, from the scripts' text to the status.
#include "cli/test_app.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string_view>

#include "report/json.h"
#include "report/junit.h"
#include "report/table.h"
#include "script/screenshots.h"
#include "report/tap.h"
#include "service/main_loop.h"

namespace corvis::kit {

namespace {

std::unique_ptr<Reporter> MakeReporter(Output output) {
  switch (output) {
    case Output::kTap:
      return std::make_unique<TapReporter>(stdout);
    case Output::kJson:
      return std::make_unique<JsonReporter>(stdout);
    case Output::kNarration:
      break;
  }
  return std::make_unique<Narrator>(stdout);
}

// What some editors put in front of a file's text.
std::string_view WithoutByteOrderMark(std::string_view text) {
  constexpr std::string_view kMark = "\xef\xbb\xbf";
  return text.substr(0, kMark.size()) == kMark ? text.substr(kMark.size()) : text;
}

}  // namespace

bool ReadScripts(const std::vector<std::string>& files, std::vector<VoiceScript>& scripts) {
  bool is_ok = true;
  for (const std::string& file : files) {
    std::ifstream stream(file, std::ios::binary);
    std::ostringstream text;
    if (!stream || !(text << stream.rdbuf())) {
      std::fprintf(stderr, "corvis-voice: The script %s can't be read, or is empty.\n", file.c_str());
      is_ok = false;
      continue;
    }
    scripts.push_back(ParseVoiceScript(WithoutByteOrderMark(text.str()), file));
    for (const ScriptError& error : scripts.back().errors) {
      std::fprintf(stderr, "%s\n", Located(file, error.place, error.sentence).c_str());
      is_ok = false;
    }
    if (scripts.back().errors.empty() && scripts.back().steps.empty()) {
      std::fprintf(stderr, "corvis-voice: The script %s has no statement.\n", file.c_str());
      is_ok = false;
    }
  }
  return is_ok;
}

ScriptRun::ScriptRun(const Options& options, const std::vector<VoiceScript>& scripts)
    : options_(options), scripts_(scripts) {
  reporters_.push_back(MakeReporter(options.output));
  if (!options.junit_file.empty()) reporters_.push_back(std::make_unique<JUnitReporter>(options.junit_file));
  for (const auto& reporter : reporters_) reporter->OnStart(scripts_);
}

int ScriptRun::Abort(int status, const std::string& sentence) {
  std::fprintf(stderr, "corvis-voice: %s\n", sentence.c_str());
  for (const auto& reporter : reporters_) reporter->OnAbort(sentence);
  return End({}, status);
}

int ScriptRun::End(const RunTotals& totals, int status) {
  for (const auto& reporter : reporters_) reporter->OnEnd(totals, status);
  return status;
}

std::string ScriptRun::ScreenshotFolder() const {
  if (!options_.screenshot_folder.empty() || options_.junit_file.empty()) return options_.screenshot_folder;
  const std::string beside = std::filesystem::path(options_.junit_file).parent_path();
  return beside.empty() ? "." : beside;
}

int ScriptRun::Run(Conversation& conversation) {
  std::vector<std::string> privileges;
  for (const std::string& name : options_.privileges) privileges.push_back(PrivilegeUri(name));
  const std::string problem = conversation.NoteBeginning(privileges);
  if (!problem.empty()) return Abort(kExitNoApp, problem);

  Coverage coverage(conversation.registered());
  std::vector<Reporter*> reporters = {&coverage};
  for (const auto& reporter : reporters_) reporters.push_back(reporter.get());
  ScriptRunner::Photographer photographer;
  const std::string folder = ScreenshotFolder();
  if (!folder.empty()) {
    photographer = [&conversation, &folder](const VoiceScript& script, const Step& step) {
      return SaveScreenshot(conversation, folder, script, step);
    };
  }
  ScriptRunner runner(conversation, reporters, photographer);
  runner.set_pace(options_.pace);
  for (const VoiceScript& script : scripts_) runner.Run(script);
  const CoverageReport report = coverage.Report();
  if (options_.is_coverage_shown || options_.least_coverage > 0) {
    for (const auto& reporter : reporters_) reporter->OnCoverage(report);
  }
  return End(runner.totals(), StatusOf(runner.totals(), report));
}

int ScriptRun::StatusOf(const RunTotals& totals, const CoverageReport& coverage) const {
  if (IsTimeOver()) return kExitTimeOver;
  if (IsInterrupted()) return kExitInterrupted;
  if (totals.failed > 0) return kExitFailed;
  if (coverage.percent >= options_.least_coverage) return kExitOk;
  std::fprintf(stderr, "corvis-voice: The voice coverage is %d %%, less than the %ld %% asked for.\n",
               coverage.percent, options_.least_coverage);
  return kExitLowCoverage;
}

}  // namespace corvis::kit
