// Reports a run as JUnit XML for build servers: a suite for each script, a case for each test.
#include <fmt/format.h>

#include <pugixml.hpp>
#include <sstream>
#include <utility>
#include <vector>

#include "output/text_forms.h"
#include "report/reports.h"
#include "report/wording.h"

namespace corvis::kit {

namespace {

// A failed attempt that another one replaced.
struct Rerun {
  std::string message;
  std::string details;
};

struct Case {
  std::string name;
  int line = 1;
  std::chrono::microseconds duration{0};
  bool has_run = false;
  bool has_failed = false;
  // The failure's message.
  std::string message;
  std::string details;
  std::string output;
  std::vector<Rerun> reruns;
};

struct Suite {
  std::string name;
  std::vector<Case> cases;
};

std::string Seconds(std::chrono::microseconds time) {
  return fmt::format("{:.3f}", std::chrono::duration<double>(time).count());
}

void SetAttribute(pugi::xml_node& node, const char* name, const std::string& value) {
  node.append_attribute(name) = ForXml(value).c_str();
}

pugi::xml_node AppendText(pugi::xml_node& parent, const char* name, const std::string& text) {
  pugi::xml_node node = parent.append_child(name);
  if (!text.empty()) node.text() = ForXml(text).c_str();
  return node;
}

void Append(pugi::xml_node& parent, const std::string& file, const Case& test) {
  pugi::xml_node node = parent.append_child("testcase");
  SetAttribute(node, "name", test.name);
  SetAttribute(node, "classname", file);
  SetAttribute(node, "file", file);
  SetAttribute(node, "line", std::to_string(test.line));
  SetAttribute(node, "time", Seconds(test.duration));
  if (test.has_failed) {
    pugi::xml_node failure = AppendText(node, "failure", test.details);
    SetAttribute(failure, "message", test.message);
  } else if (!test.has_run) {
    node.append_child("skipped");
  }
  // The elements by which build servers find flaky tests.
  for (const Rerun& rerun : test.reruns) {
    pugi::xml_node attempt = node.append_child(test.has_failed ? "rerunFailure" : "flakyFailure");
    SetAttribute(attempt, "message", rerun.message);
    AppendText(attempt, "stackTrace", rerun.details);
  }
  if (!test.output.empty()) AppendText(node, "system-out", test.output);
}

void Append(pugi::xml_node& parent, const Suite& suite) {
  int failures = 0;
  int skipped = 0;
  std::chrono::microseconds duration{0};
  for (const Case& test : suite.cases) {
    failures += test.has_failed ? 1 : 0;
    skipped += test.has_run ? 0 : 1;
    duration += test.duration;
  }
  pugi::xml_node node = parent.append_child("testsuite");
  SetAttribute(node, "name", suite.name);
  SetAttribute(node, "tests", std::to_string(suite.cases.size()));
  SetAttribute(node, "failures", std::to_string(failures));
  SetAttribute(node, "skipped", std::to_string(skipped));
  SetAttribute(node, "time", Seconds(duration));
  for (const Case& test : suite.cases) Append(node, suite.name, test);
}

// Appends the error that ended the run as a suite with one case.
void AppendError(pugi::xml_node& parent, const char* name, const std::string& message) {
  pugi::xml_node suite = parent.append_child("testsuite");
  SetAttribute(suite, "name", name);
  SetAttribute(suite, "tests", "1");
  SetAttribute(suite, "errors", "1");
  pugi::xml_node test = suite.append_child("testcase");
  SetAttribute(test, "name", name);
  pugi::xml_node error = test.append_child("error");
  SetAttribute(error, "message", message);
}

class JUnitReport : public Report {
 public:
  explicit JUnitReport(OutputFile output) : output_(std::move(output)) {}

  void Take(const Event& event) override {
    std::visit([this](const auto& kind) { this->Collect(kind); }, event);
  }
  // Writes the document, which is complete only now.
  Status Finish() override {
    output_.Write(Xml());
    return output_.Finish();
  }

 private:
  void Collect(const ScriptStarted& script) { suites_.push_back({script.file, {}}); }
  void Collect(const TestStarted& test) {
    if (test.attempt == 1) Begin(test.name, test.place.line);
  }
  void Collect(const StepDone& step) {
    if (suites_.back().cases.empty()) Begin(step.place.file, step.place.line);
    Case& test = suites_.back().cases.back();
    test.duration += step.duration;
    test.has_run = test.has_run || step.status != StepStatus::kSkipped;
    if (step.failure) Collect(test, step);
  }
  void Collect(const RunAborted& abort) { abort_ = abort.message; }
  template <typename Other>
  void Collect(const Other& /*event*/) {}

  static void Collect(Case& test, const StepDone& step) {
    const Failure& failure = *step.failure;
    const std::string message = Describe(failure);
    const std::string details = Located(step.place, step.source) + "\n" + message;
    if (step.is_replaced) {
      test.reruns.push_back({message, details});
    } else {
      test.has_failed = true;
      test.message = message;
      test.details = details;
    }
    for (const std::string& line : failure.console) test.output += line + "\n";
    // The notation by which build servers find a case's attachments.
    if (!failure.screenshot.empty()) test.output += "[[ATTACHMENT|" + failure.screenshot + "]]\n";
  }

  void Begin(const std::string& name, int line) {
    Case test;
    test.name = name;
    test.line = line;
    suites_.back().cases.push_back(std::move(test));
  }

  std::string Xml() const {
    pugi::xml_document document;
    pugi::xml_node declaration = document.append_child(pugi::node_declaration);
    SetAttribute(declaration, "version", "1.0");
    SetAttribute(declaration, "encoding", "UTF-8");
    pugi::xml_node suites = document.append_child("testsuites");
    for (const Suite& suite : suites_) Append(suites, suite);
    if (!abort_.empty()) AppendError(suites, suites_.empty() ? "start" : "run", abort_);
    std::ostringstream text;
    document.save(text, "  ");
    return text.str();
  }

  OutputFile output_;
  std::vector<Suite> suites_;
  std::string abort_;
};

}  // namespace

std::unique_ptr<Report> MakeJUnitReport(OutputFile output) {
  return std::make_unique<JUnitReport>(std::move(output));
}

}  // namespace corvis::kit
