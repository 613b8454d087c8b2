// corvis test-app: runs voice scripts against an application.
#include "cli/application.h"
#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/script_run.h"
#include "cli/watch_run.h"
#include "cli/worker.h"
#include "cli/worker_pool.h"

namespace corvis::kit {

namespace {

class TestAppCommand : public Subcommand {
 public:
  void Declare(CLI::App& app) override {
    Describe(
        app,
        "Runs voice scripts against the application, without a window. A script is a file, FILE:LINE for "
        "the\n"
        "test at that line, or a folder, for all *.voice files in it. docs/voice-scripts.md describes the\n"
        "script language. The report is for people on a terminal, and TAP 14 elsewhere.");
    options_.application.console = "errors";
    AddSelectionOptions(app, options_.selection);
    AddFlag(app, "--last-failed", "run the tests that failed when they last ran", options_.is_last_failed);
    AddFlag(app, "--watch", "run what a change of the scripts or the application affects, until q",
            is_watching_);
    AddFlag(app, "--list", "list the tests and start nothing", options_.is_list);
    AddReportOptions(app, options_);
    AddText(app, "--screenshots", "DIR",
            "save screenshots of failures there (default: next to the JUnit report)",
            options_.screenshot_folder);
    BeginGroup(app, "Retries");
    constexpr long kMostRetries = 100;
    AddNumber(app, "--retries", "N", "run a script again, up to N times, while tests of it fail",
              kMostRetries, options_.retries);
    DeclareJobs(app);
    BeginGroup(app, "Limits");
    AddTime(app, "--total-timeout", "S", "time limit of the whole run in seconds", options_.total_timeout);
    AddApplicationOptions(app, Viewer::kProgram, options_.application);
    AddInspectOption(app, options_.application);
    DescribeStatuses(
        app, {{kExitOk, "every expectation held"},
              {kExitFailed, "one failed, or --fail-on-flaky found a flaky test"},
              {kExitUsage, "wrong usage, or a script has mistakes or can't be read; nothing was started"},
              {kExitLowCoverage, "less coverage than --coverage-min"},
              {kExitTimeOver, "the time limit for the whole run was over"}});
  }

  Result<int> Execute(Supervisor& supervisor, const std::vector<std::string>& operands) override {
    if (is_worker_) return RunWorker(supervisor, operands[0], options_);
    const ApplicationOptions& application = options_.application;
    const bool is_shared = !application.run.profile.empty() || !application.inspector_port.empty() ||
                           !application.run.server.command.empty();
    if (options_.jobs > 1 && (is_shared || is_watching_))
      return Fail(
          "--jobs needs runs that share nothing, so it can't be combined with --profile, --inspect, --serve "
          "and --watch.",
          ErrorKind::kUsage);
    const std::vector<std::string> scripts(operands.begin() + 1, operands.end());
    return is_watching_ ? WatchScripts(supervisor, operands[0], scripts, options_)
                        : RunScripts(supervisor, operands[0], scripts, options_);
  }

 private:
  void DeclareJobs(CLI::App& app) {
    constexpr long kMostJobs = 64;
    BeginGroup(app, "Jobs");
    AddValue(
        app, "--jobs", "N", "run N scripts at the same time; auto: as the cores and the memory allow", "1",
        [](const std::string& value) {
          return value == "auto" || WholeNumber(kMostJobs)(value).empty()
                     ? ""
                     : "a whole number from 1 to 64, or auto";
        },
        [this](const std::string& value) {
          options_.jobs = value == "auto" ? SuitableWorkers() : std::stol(value);
        });
    BeginGroup(app, "");
    AddFlag(app, "--worker", "run the scripts of another process", is_worker_);
  }

  ScriptRunOptions options_;
  bool is_watching_ = false;
  bool is_worker_ = false;
};

}  // namespace

std::unique_ptr<Subcommand> MakeTestAppCommand() {
  return std::make_unique<TestAppCommand>();
}

}  // namespace corvis::kit
