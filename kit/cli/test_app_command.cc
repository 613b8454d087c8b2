// corvis test-app: runs voice scripts against an application.
#include "cli/application.h"
#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/script_run.h"
#include "cli/watch_run.h"
#include "report/reports.h"

namespace corvis::kit {

namespace {

class TestAppCommand : public Subcommand {
 public:
  void Declare(CLI::App& app) override {
    app.description(
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
    DeclareReports(app);
    app.option_defaults()->group("Retries");
    constexpr long kMostRetries = 100;
    AddNumber(app, "--retries", "N", "run a script again, up to N times, while tests of it fail",
              kMostRetries, options_.retries);
    AddFlag(app, "--fail-on-flaky", "fail if a test passed only on a retry", options_.is_flaky_failure);
    app.option_defaults()->group("Limits");
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
    const std::vector<std::string> scripts(operands.begin() + 1, operands.end());
    return is_watching_ ? WatchScripts(supervisor, operands[0], scripts, options_)
                        : RunScripts(supervisor, operands[0], scripts, options_);
  }

 private:
  void DeclareReports(CLI::App& app) {
    app.option_defaults()->group("Output");
    for (const ReportFormat& format : ReportFormats()) {
      const std::string option = std::string("--") + format.name;
      if (format.target == ReportFormat::Target::kFile) {
        AddText(app, option, "FILE", format.help, options_.report_files[format.name]);
      } else {
        AddFlag(app, option, format.help, [this, &format] { options_.report = format.name; });
      }
    }
    AddText(app, "--screenshots", "DIR",
            "save screenshots of failures there (default: next to the JUnit report)",
            options_.screenshot_folder);
    AddFlag(app, "--coverage", "report which of the registered actions were spoken",
            options_.is_coverage_reported);
    AddNumber(app, "--coverage-min", "N", "fail if fewer than N percent of them were spoken", 100,
              options_.least_coverage);
  }

  ScriptRunOptions options_;
  bool is_watching_ = false;
};

}  // namespace

std::unique_ptr<Subcommand> MakeTestAppCommand() {
  return std::make_unique<TestAppCommand>();
}

}  // namespace corvis::kit
