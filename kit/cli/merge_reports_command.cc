// corvis merge-reports: makes the reports of several runs one, from their JSON events.
#include <algorithm>
#include <fstream>
#include <iterator>

#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/run_reports.h"
#include "report/json_forms.h"

namespace corvis::kit {

namespace {

// What all runs have in common, collected before any event is passed on.
struct Whole {
  RunStarted start;
  std::vector<Event> events;
  std::vector<RunAborted> aborts;
  bool has_coverage = false;
  int status = kExitOk;
  std::chrono::microseconds duration{0};
};

// The exit status of several runs is that of the one that has the most to say: the end of its time, a signal,
// a failure to run, a failed test, too little coverage.
int Rank(int status) {
  constexpr int kOrder[] = {kExitOk,    kExitLowCoverage, kExitFailed,       kExitUsage,
                            kExitNoApp, kExitCrashing,    kExitNoEnvironment};
  constexpr int kSignal = 100;
  if (status == kExitTimeOver) return kSignal + 1;
  const auto* const found = std::find(std::begin(kOrder), std::end(kOrder), status);
  return found == std::end(kOrder) ? kSignal : static_cast<int>(found - std::begin(kOrder));
}

int Stronger(int one, int other) {
  return Rank(other) > Rank(one) ? other : one;
}

void Add(Whole& whole, Event event) {
  if (auto* start = std::get_if<RunStarted>(&event)) {
    whole.start.steps += start->steps;
    std::move(start->scripts.begin(), start->scripts.end(), std::back_inserter(whole.start.scripts));
  } else if (const auto* abort = std::get_if<RunAborted>(&event)) {
    whole.aborts.push_back(*abort);
  } else if (std::get_if<CoverageMeasured>(&event) != nullptr) {
    whole.has_coverage = true;
  } else if (const auto* end = std::get_if<RunEnded>(&event)) {
    whole.status = Stronger(whole.status, end->status);
    whole.duration += end->duration;
  } else {
    whole.events.push_back(std::move(event));
  }
}

Status ReadEvents(const std::string& file, Whole& whole) {
  std::ifstream stream(file, std::ios::binary);
  bool has_started = false;
  bool has_ended = false;
  int number = 0;
  for (std::string line; std::getline(stream, line);) {
    ++number;
    if (line.find_first_not_of(" \t\r") == std::string::npos) continue;
    auto event = EventOfJson(line);
    if (!event)
      return Fail(file + ":" + std::to_string(number) + ": " + event.error().message, ErrorKind::kUsage);
    if (!*event) continue;
    has_started = has_started || std::get_if<RunStarted>(&**event) != nullptr;
    has_ended = has_ended || std::get_if<RunEnded>(&**event) != nullptr;
    Add(whole, std::move(**event));
  }
  if (!has_started)
    return Fail(
        "The file " + file + " can't be read or has no events; expected the output of test-app --json.",
        ErrorKind::kUsage);
  if (has_ended) return {};
  whole.aborts.push_back({"The events in " + file + " end before their run did."});
  whole.status = Stronger(whole.status, kExitFailed);
  return {};
}

class MergeReportsCommand : public Subcommand {
 public:
  void Declare(CLI::App& app) override {
    Describe(
        app,
        "Reads the JSON events of runs, one file for each, and reports them as one run, in the order of the\n"
        "files. The exit status is that of the runs, so a build that is shared among machines can end with "
        "it.");
    AddReportOptions(app, options_);
    DescribeStatuses(app, {{kExitOk, "every run passed"},
                           {kExitFailed, "a run failed"},
                           {kExitUsage, "wrong usage, or a file has no events; nothing was reported"},
                           {kExitLowCoverage, "less coverage than --coverage-min"},
                           {kExitTimeOver, "the time limit of a run was over"}});
  }

  Result<int> Execute(Supervisor& /*supervisor*/, const std::vector<std::string>& operands) override {
    Whole whole;
    for (const std::string& file : operands) {
      if (const Status read = ReadEvents(file, whole); !read) return Fail(read.error());
    }
    options_.is_coverage_reported = options_.is_coverage_reported || whole.has_coverage;
    RunReports reports(options_);
    reports.Take(whole.start);
    for (const Event& event : whole.events) reports.Take(event);
    reports.TakeCoverage();
    for (const RunAborted& abort : whole.aborts) reports.Take(abort);
    return reports.End(Stronger(whole.status, reports.StatusOfTotals()), whole.duration);
  }

 private:
  ReportOptions options_;
};

}  // namespace

std::unique_ptr<Subcommand> MakeMergeReportsCommand() {
  return std::make_unique<MergeReportsCommand>();
}

}  // namespace corvis::kit
