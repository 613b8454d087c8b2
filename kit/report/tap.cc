// Reports a run in TAP 14, the Test Anything Protocol: one line per step, with failures described in YAML.
#include <fmt/format.h>

#include <sstream>
#include <utility>

#include "output/text_forms.h"
#include "report/reports.h"
#include "report/wording.h"

namespace corvis::kit {

namespace {

std::string Comment(const std::string& text) {
  return "# " + ForTerminal(text) + "\n";
}

// Makes a TAP comment of each line of a trusted text.
std::string Comments(const std::string& text) {
  std::istringstream lines(text);
  std::string comments;
  for (std::string line; std::getline(lines, line);) comments += Comment(line);
  return comments;
}

// A key and a value as YAML; a JSON string is a valid YAML scalar.
std::string Row(const char* key, const std::string& value) {
  return fmt::format("  {}: {}\n", key, JsonText(value));
}

std::string Block(const ScriptPlace& place, const Failure& failure) {
  std::string block = "  ---\n";
  if (!failure.message.empty()) block += Row("message", failure.message);
  block += Row("file", place.file);
  block += fmt::format("  line: {}\n  column: {}\n", place.line, place.column);
  if (!failure.expected.empty()) block += Row("expected", failure.expected) + Row("actual", failure.actual);
  if (!failure.screenshot.empty()) block += Row("screenshot", failure.screenshot);
  if (!failure.console.empty()) block += "  console:\n";
  for (const std::string& line : failure.console) block += fmt::format("    - {}\n", JsonText(line));
  return block + "  ...\n";
}

class TapReport : public Report {
 public:
  explicit TapReport(OutputFile output) : output_(std::move(output)) {}

  void Take(const Event& event) override {
    std::visit([this](const auto& kind) { Print(kind); }, event);
  }
  Status Finish() override { return output_.Finish(); }

 private:
  void Print(const RunStarted& run) { output_.Write(fmt::format("TAP version 14\n1..{}\n", run.steps)); }
  void Print(const TestStarted& test) {
    if (test.attempt == 1) output_.Write(Comment(test.name));
  }
  void Print(const NoteReached& note) { output_.Write(Comment(note.text)); }
  void Print(const StepDone& step) {
    attempts_.Note(step);
    if (step.is_replaced) return;
    const char* result = step.status == StepStatus::kFailed ? "not ok" : "ok";
    const char* directive = step.status == StepStatus::kSkipped ? " # SKIP an earlier step failed" : "";
    const std::string name = fmt::format("{}:{} {}", step.place.file, step.place.line, step.source);
    output_.Write(fmt::format("{} {} - {}{}\n", result, ++number_, ForTap(name), directive) +
                  (step.failure ? Block(step.place, *step.failure) : ""));
  }
  void Print(const TestDone& test) { output_.Write(Comments(attempts_.Describe(test))); }
  void Print(const CoverageMeasured& coverage) { output_.Write(Comments(Describe(coverage))); }
  void Print(const RunAborted& abort) { output_.Write("Bail out! " + ForTap(abort.message) + "\n"); }
  template <typename Other>
  void Print(const Other& /*event*/) {}

  OutputFile output_;
  int number_ = 0;
  FailedAttempts attempts_;
};

}  // namespace

std::unique_ptr<Report> MakeTapReport(OutputFile output) {
  return std::make_unique<TapReport>(std::move(output));
}

}  // namespace corvis::kit
