// The report's XML.
#include "report/junit.h"

#include <glib.h>

#include <cstdio>

#include "output/output_file.h"

namespace corvis::kit {

namespace {

// XML has no way to hold most control characters, nor bytes that are no UTF-8.
std::string Escaped(const std::string& text) {
  char* valid = g_utf8_make_valid(text.data(), static_cast<gssize>(text.size()));
  std::string escaped;
  for (const char* c = valid; *c != '\0'; ++c) {
    switch (*c) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      case '\n':
        escaped += "&#10;";
        break;
      default:
        escaped += static_cast<unsigned char>(*c) < ' ' && *c != '\t' ? ' ' : *c;
    }
  }
  g_free(valid);
  return escaped;
}

std::string Seconds(std::chrono::microseconds time) {
  char text[32];
  std::snprintf(text, sizeof(text), "%.3f", std::chrono::duration<double>(time).count());
  return text;
}

// name="value", with a blank before it.
std::string Attribute(const char* name, const std::string& value) {
  return std::string(" ") + name + "=\"" + Escaped(value) + "\"";
}

}  // namespace

void JUnitReporter::OnScript(const VoiceScript& script) {
  suites_.push_back({script.file, {}});
}

void JUnitReporter::OnStep(const VoiceScript& script, const StepResult& result) {
  auto& cases = suites_.back().cases;
  const Step& step = *result.step;
  if (step.kind == StepKind::kTest) {
    Case test;
    test.name = step.text;
    test.line = step.place.line;
    cases.push_back(test);
    return;
  }
  if (step.kind == StepKind::kNote) return;
  if (cases.empty()) {
    Case test;
    test.name = script.file;
    test.line = step.place.line;
    cases.push_back(test);
  }
  Case& test = cases.back();
  test.took += result.took;
  test.has_run = test.has_run || !result.is_skipped;
  if (!result.is_ok) TakeFailure(test, script, result);
}

void JUnitReporter::TakeFailure(Case& test, const VoiceScript& script, const StepResult& result) {
  test.message = result.problem;
  if (!result.expected.empty()) {
    test.message +=
        (test.message.empty() ? "" : " ") + ("Expected " + result.expected + ", not " + result.actual + ".");
  }
  test.details = Located(script.file, result.step->place, result.step->source) + "\n" + test.message;
  test.screenshot = result.screenshot;
  for (const std::string& line : result.console) test.console += line + "\n";
}

void JUnitReporter::OnAbort(const std::string& sentence) {
  abort_ = sentence;
}

std::string JUnitReporter::CaseXml(const Suite& suite, const Case& test) {
  std::string xml = "    <testcase" + Attribute("name", test.name) + Attribute("classname", suite.file) +
                    Attribute("file", suite.file) + Attribute("line", std::to_string(test.line)) +
                    Attribute("time", Seconds(test.took)) + ">\n";
  if (!test.message.empty()) {
    xml +=
        "      <failure" + Attribute("message", test.message) + ">" + Escaped(test.details) + "</failure>\n";
  } else if (!test.has_run) {
    xml += "      <skipped/>\n";
  }
  std::string output = test.console;
  // The form in which build servers look for files that belong to a case.
  if (!test.screenshot.empty()) output += "[[ATTACHMENT|" + test.screenshot + "]]\n";
  if (!output.empty()) xml += "      <system-out>" + Escaped(output) + "</system-out>\n";
  return xml + "    </testcase>\n";
}

std::string JUnitReporter::Xml() const {
  std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites>\n";
  for (const Suite& suite : suites_) {
    int failures = 0;
    int skipped = 0;
    std::chrono::microseconds took{0};
    std::string cases;
    for (const Case& test : suite.cases) {
      failures += test.message.empty() ? 0 : 1;
      skipped += test.has_run ? 0 : 1;
      took += test.took;
      cases += CaseXml(suite, test);
    }
    xml += "  <testsuite" + Attribute("name", suite.file) +
           Attribute("tests", std::to_string(suite.cases.size())) +
           Attribute("failures", std::to_string(failures)) + Attribute("skipped", std::to_string(skipped)) +
           Attribute("time", Seconds(took)) + ">\n" + cases + "  </testsuite>\n";
  }
  if (!abort_.empty()) {
    xml +=
        "  <testsuite name=\"start\" tests=\"1\" errors=\"1\">\n    <testcase name=\"start\">\n      <error" +
        Attribute("message", abort_) + "/>\n    </testcase>\n  </testsuite>\n";
  }
  return xml + "</testsuites>\n";
}

void JUnitReporter::OnEnd(const RunTotals& /*totals*/, int /*status*/) {
  const Status written = WriteOutputFile(file_, Xml());
  if (!written) std::fprintf(stderr, "corvis-voice: %s\n", written.error().message.c_str());
}

}  // namespace corvis::kit
