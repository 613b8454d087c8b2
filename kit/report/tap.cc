// Lines of TAP.
#include "report/tap.h"

#include "app/json_text.h"
#include "report/coverage.h"

namespace corvis::kit {

namespace {

// A description on one line; "#" would begin a directive.
std::string Escaped(const std::string& text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '#' || c == '\\') escaped += '\\';
    escaped += static_cast<unsigned char>(c) < ' ' ? ' ' : c;
  }
  return escaped;
}

// Every line of the text as a comment.
std::string Comment(const std::string& text) {
  std::string comment;
  size_t begin = 0;
  while (begin < text.size()) {
    size_t end = text.find('\n', begin);
    if (end == std::string::npos) end = text.size();
    comment += "# " + text.substr(begin, end - begin) + "\n";
    begin = end + 1;
  }
  return comment;
}

}  // namespace

void TapReporter::OnStart(const std::vector<VoiceScript>& scripts) {
  size_t count = 0;
  for (const VoiceScript& script : scripts) {
    for (const Step& step : script.steps) count += IsHeading(step.kind) ? 0 : 1;
  }
  std::fprintf(out_, "TAP version 14\n1..%zu\n", count);
}

void TapReporter::OnStep(const VoiceScript& script, const StepResult& result) {
  const Step& step = *result.step;
  if (IsHeading(step.kind)) {
    std::fputs(Comment(step.text).c_str(), out_);
    return;
  }
  const std::string name = script.file + ":" + std::to_string(step.place.line) + " " + step.source;
  std::fprintf(out_, "%s %d - %s%s\n", result.is_ok ? "ok" : "not ok", ++number_, Escaped(name).c_str(),
               result.is_skipped ? " # SKIP an earlier step failed" : "");
  if (!result.is_ok) TellFailure(script, result);
  std::fflush(out_);
}

// A JSON text is a YAML scalar.
void TapReporter::TellFailure(const VoiceScript& script, const StepResult& result) {
  const auto row = [this](const char* key, const std::string& value) {
    std::fprintf(out_, "  %s: %s\n", key, JsonText(value).c_str());
  };
  std::fputs("  ---\n", out_);
  if (!result.problem.empty()) row("message", result.problem);
  row("file", script.file);
  std::fprintf(out_, "  line: %d\n  column: %d\n", result.step->place.line, result.step->place.column);
  if (!result.expected.empty()) {
    row("expected", result.expected);
    row("actual", result.actual);
  }
  if (!result.screenshot.empty()) row("screenshot", result.screenshot);
  if (!result.console.empty()) std::fputs("  console:\n", out_);
  for (const std::string& line : result.console) std::fprintf(out_, "    - %s\n", JsonText(line).c_str());
  std::fputs("  ...\n", out_);
}

void TapReporter::OnAbort(const std::string& sentence) {
  std::fprintf(out_, "Bail out! %s\n", Escaped(sentence).c_str());
}

void TapReporter::OnCoverage(const CoverageReport& report) {
  std::fputs(Comment(Describe(report)).c_str(), out_);
}

}  // namespace corvis::kit
