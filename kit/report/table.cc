// Reports a run as a table for people: phrase, action, data, what the page showed, answer and time.
#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

#include "output/columns.h"
#include "output/text_forms.h"
#include "report/reports.h"
#include "report/wording.h"

namespace corvis::kit {

namespace {

struct Column {
  const char* heading;
  int width;
};
constexpr Column kColumns[] = {{"said", 36}, {"action", 30}, {"data", 26}, {"page", 18}, {"answer", 12}};

// The cells and the time, without a newline.
std::string Row(const std::vector<std::string>& cells, const std::string& time) {
  std::string row;
  for (size_t i = 0; i < cells.size(); ++i) row += Padded(cells[i], kColumns[i].width) + "  ";
  return row + time;
}

std::string Heading() {
  std::vector<std::string> headings;
  for (const Column& column : kColumns) headings.emplace_back(column.heading);
  return Row(headings, "      time\n");
}

std::string Row(const Exchange& exchange, const std::string& page) {
  const std::chrono::duration<double, std::milli> time = exchange.answer_time;
  return Row({exchange.said, exchange.action, exchange.data, page,
              exchange.is_answered ? exchange.answer : "no answer"},
             exchange.is_answered ? fmt::format("{:7.1f} ms", time.count()) : "");
}

// Whether the statement gets a separate line, because the conversation starts over with it.
bool IsTurningPoint(const std::string& statement) {
  return statement == "restart" || statement == "reload";
}

class TableReport : public Report {
 public:
  explicit TableReport(OutputFile output) : output_(std::move(output)), is_colorful_(output_.IsColorful()) {}

  void Take(const Event& event) override {
    std::visit([this](const auto& kind) { Print(kind); }, event);
  }
  Status Finish() override {
    PrintExchange();
    return output_.Finish();
  }

 private:
  void Print(const ScriptStarted& /*script*/) { PrintLine(Heading()); }
  void Print(const TestStarted& test) {
    const std::string attempt = test.attempt > 1 ? fmt::format(" (attempt {})", test.attempt) : "";
    PrintLine("test " + ForTerminal(Quoted(test.name)) + attempt + "\n");
  }
  void Print(const NoteReached& note) { PrintLine(ForTerminal(note.text) + "\n"); }
  void Print(const StepDone& step) {
    if (step.exchange || step.status == StepStatus::kSkipped) PrintExchange();
    if (IsTurningPoint(step.statement) && step.status != StepStatus::kSkipped)
      PrintLine(ForTerminal(step.source) + "\n");
    if (step.exchange) exchange_ = step.exchange;
    if (!step.shown.empty()) page_ = step.shown;
    if (step.failure) failures_ += "    " + ForTerminal(Located(step.place, Describe(*step.failure))) + "\n";
  }
  void Print(const TestDone& test) {
    if (test.outcome == TestOutcome::kFlaky) PrintLine("flaky: the test passed on a retry\n");
  }
  void Print(const CoverageMeasured& coverage) { PrintLine(Describe(coverage)); }
  void Print(const RunEnded& /*end*/) { PrintExchange(); }
  template <typename Other>
  void Print(const Other& /*event*/) {}

  void PrintLine(const std::string& line) {
    PrintExchange();
    output_.Write(line);
  }

  // Prints the latest exchange together with what the steps after it found.
  void PrintExchange() {
    if (exchange_) output_.Write(Row(*exchange_, page_) + "  " + Mark() + "\n");
    output_.Write(failures_);
    exchange_.reset();
    page_.clear();
    failures_.clear();
  }

  std::string Mark() const {
    const bool is_ok = failures_.empty();
    const char* mark = is_ok ? "✓" : "✗";
    return is_colorful_ ? fmt::format("\033[{}m{}\033[0m", is_ok ? 32 : 31, mark) : mark;
  }

  OutputFile output_;
  bool is_colorful_;
  std::optional<Exchange> exchange_;
  std::string page_;
  std::string failures_;
};

}  // namespace

std::unique_ptr<Report> MakeTableReport(OutputFile output) {
  return std::make_unique<TableReport>(std::move(output));
}

}  // namespace corvis::kit
