// Reports a run to people: each test with its time, all failures at the end, and on a terminal a line that
// shows how far the run is.
#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "output/columns.h"
#include "output/text_forms.h"
#include "report/reports.h"
#include "report/wording.h"

namespace corvis::kit {

namespace {

using std::chrono::microseconds;

enum Color { kRed = 31, kGreen = 32, kYellow = 33, kFaint = 90 };

// Expected and actual value stand on one line if they fit.
constexpr int kLineColumns = 100;

std::string TimeOf(microseconds time) {
  constexpr double kSecond = 1e6;
  constexpr auto kShort = std::chrono::seconds(1);
  const auto count = static_cast<double>(time.count());
  return time < kShort ? fmt::format("{:.0f} ms", count / 1000) : fmt::format("{:.1f} s", count / kSecond);
}

struct Sign {
  const char* mark;
  Color color;
  const char* remark;
};

Sign SignOf(TestOutcome outcome) {
  switch (outcome) {
    case TestOutcome::kPassed:
      return {"✓", kGreen, ""};
    case TestOutcome::kFailed:
      return {"✗", kRed, ""};
    case TestOutcome::kFlaky:
      return {"✓", kYellow, "flaky, "};
    case TestOutcome::kSkipped:
      break;
  }
  return {"-", kYellow, "skipped"};
}

class PeopleReport : public Report {
 public:
  explicit PeopleReport(OutputFile output)
      : output_(std::move(output)), is_terminal_(output_.IsTerminal()), is_colorful_(output_.IsColorful()) {}

  void Take(const Event& event) override {
    std::visit([this](const auto& kind) { Print(kind); }, event);
  }
  Status Finish() override { return output_.Finish(); }

 private:
  void Print(const RunStarted& run) {
    steps_ = run.steps;
    ShowProgress("starting the application");
  }
  void Print(const ScriptStarted& script) {
    script_ = ForTerminal(script.file);
    Write(script_ + "\n");
  }
  void Print(const TestStarted& test) {
    test_ = ForTerminal(test.name);
    ShowProgress(script_ + ": " + test_);
  }
  void Print(const StepDone& step) {
    attempts_.Note(step);
    if (!step.is_replaced) ++steps_done_;
    if (step.failure && !step.is_replaced) AddFailure(step);
    ShowProgress(script_ + (test_.empty() ? "" : ": " + test_));
  }
  void Print(const TestDone& test) {
    const Sign sign = SignOf(test.outcome);
    const bool has_run = test.outcome != TestOutcome::kSkipped;
    const std::string name = test.name ? ForTerminal(*test.name) : "(steps outside tests)";
    const std::string remark = sign.remark + (has_run ? TimeOf(test.duration) : "");
    Write("  " + Colored(sign.color, sign.mark) + " " + name + "  " + Colored(kFaint, remark) + "\n");
    const std::string attempts = attempts_.Describe(test);
    if (test.outcome == TestOutcome::kFlaky) flaky_ += fmt::format("\n{}: {}\n{}", script_, name, attempts);
    test_.clear();
  }
  void Print(const ScriptDone& script) { Write(Colored(kFaint, "  " + TimeOf(script.duration)) + "\n"); }
  void Print(const CoverageMeasured& coverage) { coverage_ = "\n" + Describe(coverage); }
  void Print(const RunAborted& abort) {
    abort_ = "\n" + Colored(kRed, "The run failed: ") + ForTerminal(abort.message) + "\n";
  }
  void Print(const RunEnded& end) { Write(failures_ + flaky_ + coverage_ + abort_ + "\n" + Sum(end) + "\n"); }
  template <typename Other>
  void Print(const Other& /*event*/) {}

  void AddFailure(const StepDone& step) {
    const Failure& failure = *step.failure;
    const ScriptPlace& place = step.place;
    failures_ += fmt::format("\n{} {}\n", Colored(kRed, fmt::format("{})", ++failure_count_)),
                             ForTerminal(Located(place, test_.empty() ? step.source : test_)));
    if (!test_.empty()) failures_ += "   " + ForTerminal(step.source) + "\n";
    if (!failure.message.empty()) failures_ += "   " + ForTerminal(failure.message) + "\n";
    if (!failure.expected.empty()) failures_ += Comparison(failure);
    for (const std::string& line : failure.console)
      failures_ += "   " + Colored(kFaint, "console") + "   " + ForTerminal(line) + "\n";
    if (!failure.screenshot.empty())
      failures_ += "   " + Colored(kFaint, "picture") + "   " + ForTerminal(failure.screenshot) + "\n";
  }

  std::string Comparison(const Failure& failure) const {
    const std::string expected = ForTerminal(failure.expected);
    const std::string actual = ForTerminal(failure.actual);
    const bool fits = ColumnsOf(expected) + ColumnsOf(actual) < kLineColumns;
    return "   expected  " + Colored(kGreen, expected) + (fits ? "   " : "\n   ") + "actual" +
           (fits ? " " : "    ") + Colored(kRed, actual) + "\n";
  }

  std::string Sum(const RunEnded& end) const {
    std::string sum = Colored(kGreen, fmt::format("{} passed", end.tests.passed));
    const auto add = [&](int count, Color color, const char* what) {
      if (count > 0) sum += ", " + Colored(color, fmt::format("{} {}", count, what));
    };
    add(end.tests.failed, kRed, "failed");
    add(end.tests.flaky, kYellow, "flaky");
    add(end.tests.skipped, kYellow, "skipped");
    constexpr double kSecond = 1e6;
    return sum + fmt::format(" ({:.1f} s)", static_cast<double>(end.duration.count()) / kSecond);
  }

  std::string Colored(Color color, const std::string& text) const {
    return is_colorful_ && !text.empty() ? fmt::format("\033[{}m{}\033[0m", static_cast<int>(color), text)
                                         : text;
  }

  // Replaces the line that shows the progress.
  void ShowProgress(const std::string& what) {
    if (!is_terminal_) return;
    const std::string line = fmt::format("{}/{} {}", steps_done_, steps_, what);
    output_.Write(kClear + Cut(line, kProgressColumns));
  }
  void Write(const std::string& text) { output_.Write((is_terminal_ ? kClear : "") + text); }

  // To the line's beginning, and erases it.
  inline static const std::string kClear = "\r\033[K";
  // A longer line would break on a narrow terminal, and could not be erased.
  static constexpr int kProgressColumns = 72;

  OutputFile output_;
  bool is_terminal_;
  bool is_colorful_;
  size_t steps_ = 0;
  size_t steps_done_ = 0;
  int failure_count_ = 0;
  std::string script_;
  // Empty outside tests with names.
  std::string test_;
  FailedAttempts attempts_;
  std::string failures_;
  std::string flaky_;
  std::string coverage_;
  std::string abort_;
};

}  // namespace

std::unique_ptr<Report> MakePeopleReport(OutputFile output) {
  return std::make_unique<PeopleReport>(std::move(output));
}

}  // namespace corvis::kit
