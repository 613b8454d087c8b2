// One run's events, and what each format makes of them.
#include "report/reports.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <locale>
#include <nlohmann/json.hpp>
#include <pugixml.hpp>
#include <sstream>

#include "report/coverage.h"

namespace corvis::kit {
namespace {

using std::chrono::microseconds;
using testing::HasSubstr;

StepDone Step(int line, const char* source, StepStatus status = StepStatus::kPassed) {
  StepDone step;
  step.place = {"a.voice", line, 1};
  step.source = source;
  step.statement = step.source.substr(0, step.source.find(' '));
  step.status = status;
  step.duration = microseconds(1600);
  return step;
}

StepDone Saying(int line, const char* phrase, const char* action, const char* answer) {
  StepDone step = Step(line, "say");
  step.exchange = Exchange{phrase, action, "", true, answer, microseconds(12'345), 1};
  return step;
}

StepDone Failing(int line, const char* source, Failure failure) {
  StepDone step = Step(line, source, StepStatus::kFailed);
  step.failure = std::move(failure);
  return step;
}

// Two scripts, of which the second can't go on.
std::vector<Event> SampleRun() {
  StepDone shown = Step(3, "show \"#a\" is \"on\"");
  shown.shown = "on";
  return {
      RunStarted{{"a.voice", "b.voice"}, 5},
      ActionsRegistered{{"ACTION_PLAY", "ACTION_STOP"}},
      ScriptStarted{"a.voice"},
      TestStarted{{"a.voice", 1, 1}, "A <test>"},
      Saying(2, "play", "ACTION_PLAY", "success"),
      shown,
      NoteReached{{"a.voice", 4, 1}, "now #stop"},
      Saying(5, "stop", "ACTION_STOP", "not_support"),
      Failing(6, "expect success",
              {"The callback threw: boom\nnot ok 9.",
               "\"success\"",
               "\"not_support\"",
               {"log: a\x1b[2Jb"},
               "a-6.png"}),
      Step(7, "show \"#a\" is \"off\"", StepStatus::kSkipped),
      ScriptStarted{"b.voice"},
      CoverageMeasured{{"ACTION_PLAY", "ACTION_STOP"}, {}, {"ACTION_STOP"}, {"onpause"}, 100},
      RunAborted{"The bus is gone."},
      RunEnded{6, {3, 1, 1}, microseconds(1'000'001)},
  };
}

std::string Made(const char* format, const std::vector<Event>& events) {
  const std::filesystem::path file =
      std::filesystem::temp_directory_path() / ("corvis-report-" + std::to_string(getpid()));
  const auto report = FindReportFormat(format).make(OutputFile(file));
  for (const Event& event : events) report->Take(event);
  EXPECT_TRUE(report->Finish());
  std::ifstream stream(file);
  std::ostringstream text;
  text << stream.rdbuf();
  std::filesystem::remove(file);
  return text.str();
}

TEST(Reports, Tap) {
  EXPECT_EQ(Made("tap", SampleRun()), R"(TAP version 14
1..5
# A <test>
ok 1 - a.voice:2 say
ok 2 - a.voice:3 show "\#a" is "on"
# now #stop
ok 3 - a.voice:5 say
not ok 4 - a.voice:6 expect success
  ---
  message: "The callback threw: boom\nnot ok 9."
  file: "a.voice"
  line: 6
  column: 1
  expected: "\"success\""
  actual: "\"not_support\""
  screenshot: "a-6.png"
  console:
    - "log: a\u001b[2Jb"
  ...
ok 5 - a.voice:7 show "\#a" is "off" # SKIP an earlier step failed
# Voice coverage: 100 % (2 of 2 registered actions were spoken)
# Spoken: ACTION_PLAY ACTION_STOP
# Answered only not_support: ACTION_STOP
# Callbacks that the application does not have: 1 (--json names them)
Bail out! The bus is gone.
)");
}

TEST(Reports, Table) {
  const std::string text = Made("narrate", SampleRun());
  EXPECT_THAT(text, HasSubstr("play                                  ACTION_PLAY                     "
                              "                            on                  success          12.3 ms  ✓\n"
                              "now #stop\n"));
  EXPECT_THAT(
      text,
      HasSubstr("12.3 ms  ✗\n    a.voice:6:1: The callback threw: boom\\nnot ok 9. Expected \"success\", "
                "not \"not_support\".\n"));
}

TEST(Reports, Json) {
  std::istringstream lines(Made("json", SampleRun()));
  std::string list;
  for (std::string line; std::getline(lines, line);) {
    const auto event = nlohmann::json::parse(line);
    list += event["event"].get<std::string>() + " ";
    if (event["event"] == "step") list += event["status"].get<std::string>() + " ";
  }
  EXPECT_EQ(list,
            "start script test step passed step passed note step passed step failed step skipped script "
            "coverage abort end ");
  EXPECT_EQ(
      Made("json",
           {Saying(5, "stop", "ACTION_STOP", "not_support"), RunEnded{6, {3, 1, 1}, microseconds(1500)}}),
      R"({"event":"step","file":"a.voice","line":5,"column":1,"statement":"say","source":"say",)"
      R"("status":"passed","ms":1.6,"said":"stop","action":"ACTION_STOP","data":"","answer":"not_support",)"
      R"("answer_ms":12.345,"pieces":1})"
      "\n"
      R"({"event":"end","status":6,"passed":3,"failed":1,"skipped":1,"ms":1.5})"
      "\n");
}

TEST(Reports, JUnit) {
  EXPECT_EQ(Made("junit", SampleRun()), R"(<?xml version="1.0" encoding="UTF-8"?>
<testsuites>
  <testsuite name="a.voice" tests="1" failures="1" skipped="0" time="0.008">
    <testcase name="A &lt;test>" classname="a.voice" file="a.voice" line="1" time="0.008">
      <failure message="The callback threw: boom&#10;not ok 9. Expected &quot;success&quot;, not &quot;not_support&quot;.">a.voice:6:1: expect success
The callback threw: boom
not ok 9. Expected "success", not "not_support".</failure>
      <system-out>log: a\x1b[2Jb
[[ATTACHMENT|a-6.png]]
</system-out>
    </testcase>
  </testsuite>
  <testsuite name="b.voice" tests="0" failures="0" skipped="0" time="0.000" />
  <testsuite name="run" tests="1" errors="1">
    <testcase name="run">
      <error message="The bus is gone." />
    </testcase>
  </testsuite>
</testsuites>
)");
  EXPECT_THAT(Made("junit", {RunStarted{}, RunAborted{"No display."}, RunEnded{6, {}, {}}}),
              HasSubstr("<testsuite name=\"start\" tests=\"1\" errors=\"1\">"));
}

TEST(Reports, HaveAPointInEveryLocale) {
  struct Comma : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
  };
  const std::locale before = std::locale::global(std::locale(std::locale::classic(), new Comma));
  EXPECT_THAT(Made("json", SampleRun()), HasSubstr("\"answer_ms\":12.345"));
  EXPECT_THAT(Made("json", SampleRun()), HasSubstr("\"ms\":1000.001"));
  EXPECT_THAT(Made("junit", SampleRun()), HasSubstr("time=\"0.008\""));
  EXPECT_THAT(Made("narrate", SampleRun()), HasSubstr("12.3 ms"));
  std::locale::global(before);
}

TEST(Reports, AFullDiskIsAFailure) {
  for (const ReportFormat& format : ReportFormats()) {
    const auto report = format.make(OutputFile("/dev/full"));
    for (const Event& event : SampleRun()) report->Take(event);
    const Status written = report->Finish();
    ASSERT_FALSE(written) << format.name;
    EXPECT_EQ(written.error().message, "The file /dev/full can't be written: No space left on device.");
  }
}

TEST(Coverage, CountsTheActionsOfAllPages) {
  Coverage coverage;
  StepDone unanswered = Saying(1, "stop", "ACTION_STOP", "");
  unanswered.exchange->is_answered = false;
  for (const Event& event : std::vector<Event>{
           ActionsRegistered{{"ACTION_STOP", "ACTION_PLAY"}},
           Saying(1, "play", "ACTION_PLAY", "not_support"),
           unanswered,
           Saying(1, "select 1", "ACTION_ITEM_SELECTION", "success"),
           ActionsRegistered{{"ACTION_PAUSE"}},
           Saying(1, "pause", "ACTION_PAUSE", "not_support"),
           Saying(1, "pause", "ACTION_PAUSE", "success"),
       }) {
    coverage.Take(event);
  }
  const CoverageMeasured measured = coverage.Measure();
  EXPECT_THAT(measured.spoken, testing::ElementsAre("ACTION_PLAY", "ACTION_PAUSE"));
  EXPECT_THAT(measured.unspoken, testing::ElementsAre("ACTION_STOP"));
  EXPECT_THAT(measured.refused, testing::ElementsAre("ACTION_PLAY"));
  EXPECT_EQ(measured.missing_callbacks.size(), 29U);
  EXPECT_EQ(measured.percent, 66);
  EXPECT_EQ(Coverage().Measure().percent, 100) << "nothing to speak";
}

}  // namespace
}  // namespace corvis::kit
