// Makes the reports of a run and finishes them.
#include "cli/run_reports.h"

#include <unistd.h>

#include <algorithm>
#include <utility>

#include "cli/command_line.h"
#include "cli/exit_status.h"

namespace corvis::kit {

void AddReportOptions(CLI::App& app, ReportOptions& options) {
  BeginGroup(app, "Output");
  for (const ReportFormat& format : ReportFormats()) {
    const std::string option = std::string("--") + format.name;
    if (format.target == ReportFormat::Target::kFile) {
      AddText(app, option, "FILE", format.help, options.report_files[format.name]);
    } else {
      AddFlag(app, option, format.help, [&options, &format] { options.report = format.name; });
    }
  }
  AddFlag(app, "--coverage", "report which of the registered actions were spoken",
          options.is_coverage_reported);
  AddNumber(app, "--coverage-min", "N", "fail if fewer than N percent of them were spoken", 100,
            options.least_coverage);
  AddFlag(app, "--fail-on-flaky", "fail if a test passed only on a retry", options.is_flaky_failure);
}

bool NeedsPage(const ReportOptions& options) {
  return std::any_of(ReportFormats().begin(), ReportFormats().end(), [&options](const ReportFormat& format) {
    const auto file = options.report_files.find(format.name);
    const bool has_file = file != options.report_files.end() && !file->second.empty();
    return format.needs_page && (has_file || options.report == format.name);
  });
}

RunReports::RunReports(const ReportOptions& options) : options_(options) {
  const char* usual = isatty(STDOUT_FILENO) == 1 ? "people" : "tap";
  AddReport(options.report.empty() ? usual : options.report, OutputFile::Standard());
  for (const auto& [format, file] : options.report_files) {
    if (!file.empty()) AddReport(format, OutputFile(file));
  }
}

void RunReports::AddReport(const std::string& format, OutputFile output) {
  reports_.push_back(FindReportFormat(format).make(std::move(output)));
}

void RunReports::Take(const Event& event) {
  has_scripts_ = has_scripts_ || std::get_if<ScriptStarted>(&event) != nullptr;
  coverage_.Take(event);
  tally_.Take(event);
  listeners_.Take(event);
  for (const auto& report : reports_) report->Take(event);
}

void RunReports::TakeCoverage() {
  if (!has_scripts_) return;
  if (options_.is_coverage_reported || options_.least_coverage > 0) Take(coverage_.Measure());
}

int RunReports::StatusOfTotals() {
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
int RunReports::Miss(int status, const std::string& sentence) {
  PrintError({sentence});
  Take(RunAborted{sentence});
  return status;
}

int RunReports::End(int status, std::chrono::microseconds duration) {
  Take(RunEnded{status, tally_.steps(), duration, tally_.tests()});
  for (const auto& report : reports_) {
    const Status written = report->Finish();
    if (written) continue;
    PrintError(written.error());
    if (status == kExitOk) status = kExitFailed;
  }
  return status;
}

}  // namespace corvis::kit
