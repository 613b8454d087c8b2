// Runs scripts, passes the events to the reports, and determines the exit status.
#include "cli/script_run.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <utility>

#include "cli/exit_status.h"
#include "cli/last_failed.h"
#include "cli/running_application.h"
#include "events/events.h"
#include "report/coverage.h"
#include "report/reports.h"
#include "report/tally.h"
#include "script/retries.h"
#include "script/runner.h"

namespace corvis::kit {

namespace {

using Clock = std::chrono::steady_clock;

std::vector<VoiceScript> ScriptsOf(const std::vector<SelectedScript>& selected) {
  std::vector<VoiceScript> scripts;
  scripts.reserve(selected.size());
  for (const SelectedScript& one : selected) scripts.push_back(one.script);
  return scripts;
}

Result<int> Print(const std::string& text) {
  const Status printed = WriteStandardOutput(text);
  return printed ? Result<int>(kExitOk) : Fail(printed.error());
}

std::string WhyEmpty(bool is_last_failed, const SelectionOptions& selection) {
  if (is_last_failed) return "None of the chosen tests failed when it last ran, so nothing is run.";
  return "There are fewer scripts than shards, so the shard " + std::to_string(selection.shard) + "/" +
         std::to_string(selection.shards) + " has none and nothing is run.";
}

class ScriptRun {
 public:
  ScriptRun(Supervisor& supervisor, std::vector<VoiceScript> scripts, const ScriptRunOptions& options,
            LastFailed& last_failed)
      : supervisor_(supervisor), scripts_(std::move(scripts)), options_(options), last_failed_(last_failed) {
    events_.Add(last_failed_);
    events_.Add(tally_);
    events_.Add(coverage_);
    const char* usual = isatty(STDOUT_FILENO) == 1 ? "people" : "tap";
    AddReport(options.report.empty() ? usual : options.report, OutputFile::Standard());
    for (const auto& [format, file] : options.report_files) {
      if (!file.empty()) AddReport(format, OutputFile(file));
    }
  }

  Result<int> Run(RunningApplication& application) {
    events_.Take(BeginningOf(scripts_));
    const Status status = RunAll(application);
    if (status) return End(StatusOfTotals());
    events_.Take(RunAborted{status.error().message});
    End(supervisor_.signal_status() != 0 ? supervisor_.signal_status() : StatusOf(status.error().kind));
    return Fail(status.error());
  }

  // The whole reports of a run without scripts.
  int RunNone() {
    events_.Take(BeginningOf(scripts_));
    return End(kExitOk);
  }

 private:
  void AddReport(const std::string& format, OutputFile output) {
    const ReportFormat& found = FindReportFormat(format);
    reports_.push_back(found.make(std::move(output)));
    needs_page_ = needs_page_ || found.needs_page;
    events_.Add(*reports_.back());
  }

  // Fails if the run can't start or can't continue.
  Status RunAll(RunningApplication& application) {
    if (const Status ready = application.Begin(); !ready) return ready;
    Retries retries(events_, options_.retries);
    const auto start_again = [&] { return application.StartAgain(); };
    ScriptRunner runner(application.conversation(), retries,
                        {options_.pace, ScreenshotFolder(options_), start_again, needs_page_});
    for (const VoiceScript& script : scripts_) retries.Run(runner, script);
    if (options_.is_coverage_reported || options_.least_coverage > 0) events_.Take(coverage_.Measure());
    const Error* obstacle = runner.Obstacle();
    return obstacle == nullptr ? Status() : Fail(*obstacle);
  }

  // The exit status of a completed run.
  int StatusOfTotals() {
    if (tally_.steps().failed > 0) return kExitFailed;
    const int flaky = tally_.tests().flaky;
    if (flaky > 0 && options_.is_flaky_failure)
      return Miss(kExitFailed, "Tests passed only on a retry (" + std::to_string(flaky) +
                                   "), which --fail-on-flaky makes a failure.");
    const int percent = coverage_.Measure().percent;
    if (percent >= options_.least_coverage) return kExitOk;
    return Miss(kExitLowCoverage, "The voice coverage is " + std::to_string(percent) + " %, less than the " +
                                      std::to_string(options_.least_coverage) + " % of --coverage-min.");
  }

  // Reports that the run misses a condition, and returns the status.
  int Miss(int status, const std::string& sentence) {
    PrintError({sentence});
    events_.Take(RunAborted{sentence});
    return status;
  }

  // Finishes the reports. Returns `status`, or an error status if a report can't be written.
  int End(int status) {
    const auto time = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - begin_);
    events_.Take(RunEnded{status, tally_.steps(), time, tally_.tests()});
    last_failed_.Save();
    for (const auto& report : reports_) {
      const Status written = report->Finish();
      if (written) continue;
      PrintError(written.error());
      if (status == kExitOk) status = kExitFailed;
    }
    return status;
  }

  const Clock::time_point begin_ = Clock::now();
  Supervisor& supervisor_;
  const std::vector<VoiceScript> scripts_;
  const ScriptRunOptions& options_;
  LastFailed& last_failed_;
  Coverage coverage_;
  std::vector<std::unique_ptr<Report>> reports_;
  EventFanOut events_;
  Tally tally_;
  bool needs_page_ = false;
};

}  // namespace

std::string ScreenshotFolder(const ScriptRunOptions& options) {
  const auto junit = options.report_files.find("junit");
  const bool has_junit = junit != options.report_files.end() && !junit->second.empty();
  if (!options.screenshot_folder.empty() || !has_junit) return options.screenshot_folder;
  const std::string beside = std::filesystem::path(junit->second).parent_path();
  return beside.empty() ? "." : beside;
}

Result<int> RunScripts(Supervisor& supervisor, const std::string& application,
                       const std::vector<std::string>& operands, const ScriptRunOptions& options) {
  RunningApplication running(supervisor, application, options.application);
  LastFailed last_failed(application);
  if (!options.is_list) supervisor.EndAfter(options.total_timeout, kExitTimeOver);
  return RunChosen(supervisor, running, last_failed, operands, options, ScriptChoice());
}

Result<int> RunChosen(Supervisor& supervisor, RunningApplication& application, LastFailed& last_failed,
                      const std::vector<std::string>& operands, const ScriptRunOptions& options,
                      const ScriptChoice& choice) {
  const Result<SpokenLanguage> language = OpenLanguage(options.application.language);
  if (!language) return Fail(language.error());
  const bool is_last_failed = options.is_last_failed || choice.is_last_failed;
  auto selected = SelectScripts(operands, *language, options.selection,
                                [&](const VoiceScript& script, const ScriptTest& test) {
                                  return (!choice.includes || choice.includes(script.file)) &&
                                         (!is_last_failed || last_failed.Contains(script, test));
                                });
  if (!selected) return Fail(selected.error());
  if (choice.includes && selected->empty()) return kExitOk;
  if (choice.is_failed_first) {
    std::stable_partition(selected->begin(), selected->end(), [&](const SelectedScript& one) {
      const auto& tests = one.script.tests;
      return std::any_of(tests.begin(), tests.end(),
                         [&](const ScriptTest& test) { return last_failed.Contains(one.script, test); });
    });
  }
  if (selected->empty()) PrintLine(WhyEmpty(is_last_failed, options.selection));
  if (options.is_list) return Print(ListOf(*selected));
  ScriptRun run(supervisor, ScriptsOf(*selected), options, last_failed);
  return selected->empty() ? run.RunNone() : run.Run(application);
}

}  // namespace corvis::kit
