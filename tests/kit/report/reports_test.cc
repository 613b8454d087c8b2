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

#include "output/text_forms.h"
#include "report/coverage.h"
#include "report/json_forms.h"
#include "report/tally.h"

namespace corvis::kit {
namespace {

using std::chrono::microseconds;
using testing::HasSubstr;

StepDone StepAt(int line, const char* source, StepStatus status = StepStatus::kPassed) {
  StepDone step;
  step.place = {"a.voice", line, 1};
  step.source = source;
  step.statement = step.source.substr(0, step.source.find(' '));
  step.status = status;
  step.duration = microseconds(1600);
  return step;
}

StepDone Saying(int line, const char* phrase, const char* action, const char* answer) {
  StepDone step = StepAt(line, "say");
  step.exchange = Exchange{phrase, action, "", true, answer, microseconds(12'345), 1};
  return step;
}

// Two scripts, of which the second can't go on.
std::vector<Event> SampleRun() {
  StepDone shown = StepAt(3, "show \"#a\" is \"on\"");
  shown.shown = "on";
  StepDone failed = StepAt(6, "expect success", StepStatus::kFailed);
  failed.failure = Failure{
      "The callback threw: boom\nnot ok 9.", "\"success\"", "\"not_support\"", {"log: a\x1b[2Jb"}, "a-6.png"};
  const PageSeen view{960, 540, {{0, "</p>", 8, 8, 80, 20, true, false}}, {"1f", "data:,x"}};
  return {
      RunStarted{{"a.voice", "b.voice"}, 5},
      ActionsRegistered{{"ACTION_PLAY", "ACTION_STOP"}},
      ScriptStarted{"a.voice"},
      TestStarted{{"a.voice", 1, 1}, "A <test>"},
      view,
      Saying(2, "play", "ACTION_PLAY", "success"),
      shown,
      view,
      NoteReached{{"a.voice", 4, 1}, "now #stop"},
      Saying(5, "stop", "ACTION_STOP", "not_support"),
      failed,
      StepAt(7, "show \"#a\" is \"off\"", StepStatus::kSkipped),
      ScriptStarted{"b.voice"},
      CoverageMeasured{{"ACTION_PLAY", "ACTION_STOP"}, {}, {"ACTION_STOP"}, {"onpause"}, 100},
      RunAborted{"The bus is gone."},
      RunEnded{6, {3, 1, 1}, microseconds(1'000'001), {}},
  };
}

// A test that passes in its second attempt, and one that never does.
std::vector<Event> FlakyRun() {
  StepDone failed = Saying(2, "play", "ACTION_PLAY", "not_support");
  failed.status = StepStatus::kFailed;
  failed.failure = Failure{"It broke.", "", "", {}, ""};
  failed.is_replaced = true;
  StepDone passed = Saying(2, "play", "ACTION_PLAY", "success");
  passed.attempt = 2;
  StepDone last = failed;
  last.place.line = 5;
  StepDone still = last;
  still.is_replaced = false;
  still.attempt = 2;
  return {RunStarted{{"a.voice"}, 2},
          ActionsRegistered{{"ACTION_PLAY"}},
          ScriptStarted{"a.voice"},
          TestStarted{{"a.voice", 1, 1}, "shaky", 1},
          failed,
          TestStarted{{"a.voice", 1, 1}, "shaky", 2},
          passed,
          TestDone{{"a.voice", 1, 1}, "shaky", TestOutcome::kFlaky, 2, microseconds(3200)},
          TestStarted{{"a.voice", 4, 1}, "broken", 1},
          last,
          TestStarted{{"a.voice", 4, 1}, "broken", 2},
          still,
          TestDone{{"a.voice", 4, 1}, "broken", TestOutcome::kFailed, 2, microseconds(3200)},
          ScriptDone{"a.voice", microseconds(9000)},
          RunEnded{1, {1, 1, 0}, microseconds(9000), {0, 1, 0, 1}}};
}

std::string Made(const char* format, const std::vector<Event>& events) {
  const std::string file = testing::TempDir() + "corvis-report-" + std::to_string(getpid());
  const auto report = FindReportFormat(format).make(OutputFile(file));
  for (const Event& event : events) report->Take(event);
  EXPECT_TRUE(report->Finish());
  std::ifstream stream(file);
  std::ostringstream text;
  text << stream.rdbuf();
  std::filesystem::remove(file);
  return text.str();
}

// docs/voice-scripts.md shows each format as a whole, and its commands are tests; here is what they don't
// come to.
TEST(Reports, HoldWhateverARunMayBring) {
  const std::pair<const char*, const char*> rows[] = {
      {"tap",
       "1..5\n# A <test>\nok 1 - a.voice:2 say\nok 2 - a.voice:3 show \"\\#a\" is \"on\"\n# now #stop\nok 3"},
      {"tap", "  message: \"The callback threw: boom\\nnot ok 9.\"\n  file: \"a.voice\"\n  line: 6\n"},
      {"tap", "  screenshot: \"a-6.png\"\n  console:\n    - \"log: a\\u001b[2Jb\"\n  ...\n"},
      {"tap",
       "ok 5 - a.voice:7 show \"\\#a\" is \"off\" # SKIP an earlier step failed\n# Voice coverage: 100 %"},
      {"tap",
       "# Callbacks that the application does not have: 1 (--json names them)\nBail out! The bus is gone.\n"},
      {"narrate",
       "play                                  ACTION_PLAY                                                 on"
       "                  success          12.3 ms  ✓\nnow #stop\n"},
      {"narrate",
       "12.3 ms  ✗\n    a.voice:6:1: The callback threw: boom\\nnot ok 9. Expected \"success\", "
       "not \"not_support\".\n"},
      {"json",
       R"({"event":"step","file":"a.voice","line":5,"column":1,"statement":"say","source":"say",)"
       R"("status":"passed","ms":1.6,"said":"stop","action":"ACTION_STOP","data":"","answer":"not_support",)"
       R"("answer_ms":12.345,"pieces":1})"},
      {"json", R"({"event":"end","status":6,"passed":3,"failed":1,"skipped":1,"ms":1000.001,"tests_)"},
      {"json-details",
       R"({"event":"view","width":960.0,"height":540.0,"items":[{"number":0,"title":"</p>",)"},
      {"json-details", R"("picture":"1f"})"},
      {"html", R"("text":"A \u003ctest>"})"},
      {"html", R"({"1f":"data:,x"}</script>)"},
      {"html", R"({"event":"coverage","percent":100,)"},
      {"junit",
       R"(<testcase name="A &lt;test>" classname="a.voice" file="a.voice" line="1" time="0.008">)"
       "\n      <failure message=\"The callback threw: boom&#10;not ok 9. Expected &quot;success&quot;, "},
      {"junit", "<system-out>log: a\\x1b[2Jb\n[[ATTACHMENT|a-6.png]]\n</system-out>"},
      {"junit", R"(  <testsuite name="b.voice" tests="0" failures="0" skipped="0" time="0.000" />)"},
      {"junit",
       "<testsuite name=\"run\" tests=\"1\" errors=\"1\">\n    <testcase name=\"run\">\n"
       "      <error message=\"The bus is gone.\" />"},
  };
  for (const auto& [format, part] : rows) EXPECT_THAT(Made(format, SampleRun()), HasSubstr(part)) << format;
  EXPECT_TRUE(pugi::xml_document().load_string(Made("junit", SampleRun()).c_str()));
  EXPECT_THAT(Made("junit", {RunStarted{}, RunAborted{"No display."}, RunEnded{6, {}, {}, {}}}),
              HasSubstr("<testsuite name=\"start\" tests=\"1\" errors=\"1\">"));
}

// Every kind of event, and every field with a value of its own.
std::vector<Event> AllEvents() {
  std::vector<Event> events = SampleRun();
  StepDone unsent = StepAt(8, "say \"x\"", StepStatus::kFailed);
  unsent.exchange = Exchange{"x", "", "", false, "", {}, 1};
  unsent.failure = Failure{"No item \xff is called \"x\".", "", "", {}, ""};
  unsent.attempt = 2;
  unsent.is_replaced = true;
  StepDone unanswered = Saying(9, "play", "ACTION_PLAY", "");
  unanswered.exchange->is_answered = false;
  for (const Event& event : std::vector<Event>{
           unsent, unanswered, TestStarted{{"b.voice", 2, 3}, "again", 2},
           TestDone{{"a.voice", 1, 1}, "A <test>", TestOutcome::kFlaky, 2, microseconds(1)},
           TestDone{{"a.voice", 1, 1}, {}, TestOutcome::kSkipped, 1, microseconds(0)},
           ScriptDone{"b.voice", microseconds(3'000'000'001)}, ConsoleWritten{"log", "a\nb", "api"},
           RequestMade{"http://a/b.js", "script", 404, microseconds(7)}, PageCrashed{}, ApplicationClosed{},
           RunEnded{130, {1, 2, 3}, microseconds(5), {4, 5, 6, 7}}}) {
    events.push_back(event);
  }
  return events;
}

TEST(Reports, SayWhatIsFlaky) {
  const std::pair<const char*, const char*> rows[] = {
      {"tap",
       "1..2\n# shaky\nok 1 - a.voice:2 say\n# Attempt 1 failed: a.voice:2:1: It broke.\n"
       "# Flaky: attempt 2 passed.\n# broken\nnot ok 2 - a.voice:5 say\n"},
      {"tap", "  ...\n# Attempt 1 failed: a.voice:5:1: It broke.\n"},
      {"people",
       "  ✓ shaky  flaky, 3 ms\n  ✗ broken  3 ms\n  9 ms\n\n1) a.voice:5:1: broken\n   say\n   It broke.\n"},
      {"people",
       "\na.voice: shaky\nAttempt 1 failed: a.voice:2:1: It broke.\nFlaky: attempt 2 passed.\n\n"
       "0 passed, 1 failed, 1 flaky (0.0 s)\n"},
      {"narrate", "test \"shaky\" (attempt 2)\n"},
      {"narrate", "✓\nflaky: the test passed on a retry\n"},
      {"json", R"("message":"It broke.","console":[],"replaced":true})"},
      {"json", R"("text":"shaky","status":"flaky","attempts":2,"ms":3.2})"},
      {"junit", R"(tests="2" failures="1" skipped="0")"},
      {"junit",
       "<flakyFailure message=\"It broke.\">\n        <stackTrace>a.voice:2:1: say\nIt broke.</stackTrace>"},
      {"junit", "<failure message=\"It broke.\">a.voice:5:1: say\nIt broke.</failure>\n      <rerunFailure "},
  };
  for (const auto& [format, part] : rows) EXPECT_THAT(Made(format, FlakyRun()), HasSubstr(part)) << format;
  Tally tally;
  Coverage coverage;
  for (const Event& event : FlakyRun()) {
    tally.Take(event);
    coverage.Take(event);
  }
  EXPECT_EQ(tally.steps().passed * 10 + tally.steps().failed, 11);
  EXPECT_EQ(tally.tests().flaky * 10 + tally.tests().failed, 11);
  EXPECT_THAT(coverage.Measure().refused, testing::IsEmpty()) << "an attempt was answered";
}

TEST(JsonEvents, AreReadAsTheyWereWritten) {
  std::vector<bool> kinds(std::variant_size_v<Event>);
  for (const Event& event : AllEvents()) {
    kinds[event.index()] = true;
    const std::string line = JsonLine(JsonFormOf(event));
    const auto read = EventOfJson(line);
    ASSERT_TRUE(read && *read) << line;
    EXPECT_EQ((*read)->index(), event.index());
    EXPECT_EQ(JsonLine(JsonFormOf(**read)), line);
  }
  EXPECT_THAT(kinds, testing::Each(true));
}

TEST(JsonEvents, WhatIsNoEventIsAnError) {
  for (const char* line :
       {"", "{", "[]", "3", "{}", R"({"event":"script"})", R"({"event":"script","file":3})",
        R"({"event":"start","format":2,"scripts":[],"steps":0})",
        R"({"event":"test-end","file":"a","line":1,"column":1,"status":"good"})"})
    EXPECT_FALSE(EventOfJson(line)) << line;
  for (const char* line : {R"({"event":"tomorrow","file":3})", R"({"event":["script"]})"}) {
    const auto read = EventOfJson(line);
    EXPECT_TRUE(read && !*read) << line;
  }
}

TEST(Reports, HaveAPointInEveryLocale) {
  struct Comma : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
  };
  const std::locale before = std::locale::global(std::locale(std::locale::classic(), new Comma));
  for (const auto& [format, part] : {std::pair("json", "\"answer_ms\":12.345"),
                                     {"json", "\"ms\":1000.001"},
                                     {"junit", "time=\"0.008\""},
                                     {"narrate", "12.3 ms"}})
    EXPECT_THAT(Made(format, SampleRun()), HasSubstr(part));
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
