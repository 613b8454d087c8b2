// The reports of a run, as options ask for them, and what they make of the exit status.
#ifndef CORVIS_KIT_CLI_RUN_REPORTS_H_
#define CORVIS_KIT_CLI_RUN_REPORTS_H_

#include <chrono>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "cli/command_line.h"
#include "events/events.h"
#include "report/coverage.h"
#include "report/reports.h"
#include "report/tally.h"

namespace corvis::kit {

struct ReportOptions {
  // Report formats by name (report/reports.h): the one on standard output, by default "people" on a
  // terminal and "tap" elsewhere, and those that have a file.
  std::string report;
  std::map<std::string, std::string> report_files;
  bool is_coverage_reported = false;
  // The minimum coverage in percent; less fails the run.
  long least_coverage = 0;
  // A test that passes only on a retry fails the run.
  bool is_flaky_failure = false;
};

// Declares the options, which all commands with reports share.
void AddReportOptions(CLI::App& app, ReportOptions& options);

// Whether a report that the options ask for needs the events about the page.
bool NeedsPage(const ReportOptions& options);

class RunReports : public EventSink {
 public:
  // Keeps the reference.
  explicit RunReports(const ReportOptions& options);

  // Adds a sink that gets all events before the reports, and must outlive this object's use.
  void Add(EventSink& sink) { listeners_.Add(sink); }
  void Take(const Event& event) override;

  // Reports the coverage if the options ask for it and a script was begun.
  void TakeCoverage();
  // The exit status of a completed run, after the conditions that the options set.
  int StatusOfTotals();
  // Finishes the reports. Returns `status`, or an error status if a report can't be written.
  int End(int status, std::chrono::microseconds duration);

 private:
  void AddReport(const std::string& format, OutputFile output);
  int Miss(int status, const std::string& sentence);

  const ReportOptions& options_;
  Coverage coverage_;
  Tally tally_;
  EventFanOut listeners_;
  std::vector<std::unique_ptr<Report>> reports_;
  bool has_scripts_ = false;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_RUN_REPORTS_H_
