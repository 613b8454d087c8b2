// The table's lines.
#include "report/table.h"

#include <unistd.h>

#include "report/coverage.h"
#include "script/script_reader.h"

namespace corvis::kit {

namespace {

constexpr size_t kSaidWidth = 36;
constexpr size_t kActionWidth = 30;
constexpr size_t kDataWidth = 26;
constexpr size_t kPageWidth = 18;
constexpr size_t kAnswerWidth = 12;

bool IsContinuation(char c) {
  return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

// Padded to some characters; UTF-8 characters count one.
std::string Column(const std::string& text, size_t width) {
  std::string column = Shortened(text, width);
  size_t characters = 0;
  for (const char c : column) characters += IsContinuation(c) ? 0 : 1;
  return column.append(width + 2 - characters, ' ');
}

std::string Milliseconds(const Outcome& outcome) {
  if (!outcome.is_answered) return "";
  char text[32];
  std::snprintf(text, sizeof(text), "%7.1f ms",
                std::chrono::duration<double, std::milli>(outcome.answer.took).count());
  return text;
}

}  // namespace

std::string Shortened(const std::string& text, size_t characters) {
  std::string line;
  size_t count = 0;
  for (const char c : text) {
    if (!IsContinuation(c) && ++count > characters) {
      while (!line.empty() && IsContinuation(line.back())) line.pop_back();
      if (!line.empty()) line.pop_back();
      return line + "…";
    }
    line += c == '\n' || c == '\t' ? ' ' : c;
  }
  return line;
}

std::string TurnHeading() {
  return Column("said", kSaidWidth) + Column("action", kActionWidth) + Column("data", kDataWidth) +
         Column("page", kPageWidth) + Column("answer", kAnswerWidth) + "      time";
}

std::string TurnLine(const Turn& turn, const std::string& page) {
  const Outcome& outcome = turn.outcome;
  return Column(turn.said, kSaidWidth) + Column(turn.command.action, kActionWidth) +
         Column(DescribeData(turn.command), kDataWidth) + Column(page, kPageWidth) +
         Column(outcome.is_answered ? outcome.answer.data : "no answer", kAnswerWidth) +
         Milliseconds(outcome);
}

Narrator::Narrator(std::FILE* out) : out_(out), is_colourful_(isatty(fileno(out)) == 1) {}

void Narrator::OnScript(const VoiceScript& /*script*/) {
  std::fprintf(out_, "%s\n", TurnHeading().c_str());
}

void Narrator::OnStep(const VoiceScript& script, const StepResult& result) {
  const StepKind kind = result.step->kind;
  const bool is_turn = result.turn != nullptr || result.is_skipped;
  const bool is_event = kind == StepKind::kNote || kind == StepKind::kRestart || kind == StepKind::kReload ||
                        kind == StepKind::kTest;
  if (is_turn || is_event) Flush();
  if (is_event && !result.is_skipped) {
    std::fprintf(out_, "%s\n",
                 kind == StepKind::kNote ? result.step->text.c_str() : result.step->source.c_str());
  }
  if (result.turn != nullptr) {
    has_turn_ = true;
    turn_ = *result.turn;
  }
  if (!result.shown.empty()) page_ = result.shown;
  if (!result.is_ok) TellFailure(script, result);
}

void Narrator::TellFailure(const VoiceScript& script, const StepResult& result) {
  is_ok_ = false;
  std::string sentence = result.problem;
  if (!result.expected.empty()) {
    sentence +=
        (sentence.empty() ? "" : " ") + ("Expected " + result.expected + ", not " + result.actual + ".");
  }
  failure_ += "    " + Located(script.file, result.step->place, sentence) + "\n";
}

void Narrator::Flush() {
  if (has_turn_) {
    const char* mark = is_ok_ ? "✓" : "✗";
    const char* colour = !is_colourful_ ? "" : is_ok_ ? "\033[32m" : "\033[31m";
    std::fprintf(out_, "%s  %s%s%s\n", TurnLine(turn_, page_).c_str(), colour, mark,
                 is_colourful_ ? "\033[0m" : "");
  }
  std::fputs(failure_.c_str(), out_);
  std::fflush(out_);
  has_turn_ = false;
  is_ok_ = true;
  page_.clear();
  failure_.clear();
}

void Narrator::OnCoverage(const CoverageReport& report) {
  Flush();
  std::fputs(Describe(report).c_str(), out_);
}

void Narrator::OnEnd(const RunTotals& /*totals*/, int /*status*/) {
  Flush();
}

}  // namespace corvis::kit
