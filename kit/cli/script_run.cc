// Runs scripts, passes the events to the reports, and determines the exit status.
#include "cli/script_run.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <utility>

#include "cli/exit_status.h"
#include "cli/last_failed.h"
#include "cli/running_application.h"
#include "cli/script_player.h"
#include "cli/worker_pool.h"
#include "events/events.h"
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
  ScriptRun(Supervisor& supervisor, std::vector<SelectedScript> scripts, const ScriptRunOptions& options,
            LastFailed& last_failed)
      : supervisor_(supervisor),
        scripts_(std::move(scripts)),
        options_(options),
        last_failed_(last_failed),
        reports_(options) {
    reports_.Add(last_failed_);
  }

  Result<int> Run(RunningApplication& application) {
    reports_.Take(BeginningOf(ScriptsOf(scripts_)));
    const Status status = RunAll(application);
    reports_.TakeCoverage();
    if (status) return End(reports_.StatusOfTotals());
    reports_.Take(RunAborted{status.error().message});
    End(supervisor_.signal_status() != 0 ? supervisor_.signal_status() : StatusOf(status.error().kind));
    return Fail(status.error());
  }

  // The whole reports of a run without scripts.
  int RunNone() {
    reports_.Take(BeginningOf(ScriptsOf(scripts_)));
    return End(kExitOk);
  }

 private:
  // Fails if the run can't start or can't continue.
  Status RunAll(RunningApplication& application) {
    if (options_.jobs > 1 && scripts_.size() > 1)
      return RunInWorkers(scripts_, static_cast<size_t>(options_.jobs), reports_);
    size_t next = 0;
    return PlayScripts(application, options_, NeedsPage(options_), reports_, [&] {
      return next < scripts_.size() ? std::optional(scripts_[next++].script) : std::nullopt;
    });
  }

  int End(int status) {
    last_failed_.Save();
    return reports_.End(status, std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - begin_));
  }

  const Clock::time_point begin_ = Clock::now();
  Supervisor& supervisor_;
  const std::vector<SelectedScript> scripts_;
  const ScriptRunOptions& options_;
  LastFailed& last_failed_;
  RunReports reports_;
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
  ScriptRun run(supervisor, *selected, options, last_failed);
  return selected->empty() ? run.RunNone() : run.Run(application);
}

}  // namespace corvis::kit
