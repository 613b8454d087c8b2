// The run, from the scripts' text to the status.
#include "cli/test_app.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string_view>

#include "script/runner.h"
#include "service/main_loop.h"

namespace corvis::kit {

namespace {

const char* FormatOf(Output output) {
  switch (output) {
    case Output::kTap:
      return "tap";
    case Output::kJson:
      return "json";
    case Output::kNarration:
      break;
  }
  return "narrate";
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
      std::fprintf(stderr, "%s\n", Located(error.place, error.message).c_str());
      is_ok = false;
    }
    if (scripts.back().errors.empty() && scripts.back().tests.empty()) {
      std::fprintf(stderr, "corvis-voice: The script %s has no statement.\n", file.c_str());
      is_ok = false;
    }
  }
  return is_ok;
}

ScriptRun::ScriptRun(const Options& options, const std::vector<VoiceScript>& scripts)
    : options_(options), scripts_(scripts) {
  events_.Add(coverage_);
  AddReport(FindReportFormat(FormatOf(options.output)), OutputFile::Standard());
  if (!options.junit_file.empty()) AddReport(FindReportFormat("junit"), OutputFile(options.junit_file));
  events_.Take(BeginningOf(scripts));
}

void ScriptRun::AddReport(const ReportFormat& format, OutputFile output) {
  reports_.push_back(format.make(std::move(output)));
  events_.Add(*reports_.back());
}

int ScriptRun::Abort(int status, const std::string& sentence) {
  std::fprintf(stderr, "corvis-voice: %s\n", sentence.c_str());
  events_.Take(RunAborted{sentence});
  return End({}, status);
}

int ScriptRun::End(const Totals& totals, int status) {
  const auto duration = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - begin_);
  events_.Take(RunEnded{status, totals, duration});
  for (const auto& report : reports_) {
    const Status written = report->Finish();
    if (written) continue;
    std::fprintf(stderr, "corvis-voice: %s\n", written.error().message.c_str());
    if (status == kExitOk) status = kExitFailed;
  }
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
  if (const Status noted = conversation.NoteBeginning(privileges); !noted)
    return Abort(kExitNoApp, noted.error().message);

  ScriptRunner runner(conversation, events_, {options_.pace, ScreenshotFolder()});
  for (const VoiceScript& script : scripts_) runner.Run(script);
  const CoverageMeasured coverage = coverage_.Measure();
  if (options_.is_coverage_shown || options_.least_coverage > 0) events_.Take(coverage);
  if (const Error* obstacle = runner.Obstacle()) events_.Take(RunAborted{obstacle->message});
  const int status = StatusOf(runner.totals());
  if (status != kExitOk || coverage.percent >= options_.least_coverage) return End(runner.totals(), status);
  const std::string sentence = "The voice coverage is " + std::to_string(coverage.percent) +
                               " %, less than the " + std::to_string(options_.least_coverage) +
                               " % asked for.";
  std::fprintf(stderr, "corvis-voice: %s\n", sentence.c_str());
  events_.Take(RunAborted{sentence});
  return End(runner.totals(), kExitLowCoverage);
}

int ScriptRun::StatusOf(const Totals& totals) const {
  if (IsTimeOver()) return kExitTimeOver;
  if (IsInterrupted()) return kExitInterrupted;
  return totals.failed > 0 ? kExitFailed : kExitOk;
}

}  // namespace corvis::kit
