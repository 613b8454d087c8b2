// The tests and steps of voice scripts, and what is said about wrong lines.
#include "script/script_reader.h"

#include <gmock/gmock.h>

#include <fstream>

#include "script/statements.h"
#include "testing/split.h"

namespace corvis::kit {
namespace {

VoiceScript Parse(const std::string& text, const std::string& file) {
  return ParseVoiceScript(text, file, SpokenLanguage());
}

std::string Errors(const VoiceScript& script) {
  std::string text;
  for (const ScriptError& error : script.errors) text += Located(error.place, error.message) + "\n";
  return text;
}

// A line for each test and step: place, name or statement, role.
std::string List(const VoiceScript& script) {
  std::string text = Errors(script);
  for (const ScriptTest& test : script.tests) {
    text += std::to_string(test.place.line) + " " + (test.name ? "test " + *test.name : "no test") + "\n";
    for (const Step& step : test.steps) {
      text += "  " + std::to_string(step.place.line) + ":" + std::to_string(step.place.column) + " " +
              step.statement + " " + std::to_string(static_cast<int>(step.role)) + " " + step.source + "\n";
    }
  }
  return text;
}

TEST(VoiceScript, IsTestsWithTheirSteps) {
  const char* script =
      "# comment\n\n"
      "\tsay  pause \r\n"
      "expect success\r\n"
      "test \"a # b\"\n"
      "note  well then  \n"
      "inject command=x strData=\"a \\\"b\\\"\" c=\n"
      "expect no answer within 2 s\n"
      "test \"\"\n"
      "reload";
  EXPECT_EQ(List(Parse(script, "a.voice")),
            "3 no test\n"
            "  3:2 say 2 say  pause \n"
            "  4:1 expect 3 expect success\n"
            "5 test a # b\n"
            "  6:1 note 1 note  well then  \n"
            "  7:1 inject 2 inject command=x strData=\"a \\\"b\\\"\" c=\n"
            "  8:1 expect 3 expect no answer within 2 s\n"
            "9 test \n"
            "  10:1 reload 5 reload\n");
}

// A file with phrases of an author's own.
std::string OwnPhrases() {
  const std::string path = testing::TempDir() + "own.phrases";
  std::ofstream(path) << "[phrases]\norder tickets -> ACTION_CUSTOM intent=order\n";
  return path;
}

// Each line of a script is in the language that it is read in, whichever was spoken before.
TEST(VoiceScript, SpeaksTheLanguageOfItsLine) {
  const std::string script =
      "say oder tickets\nphrases \"" + OwnPhrases() +
      "\"\nsay oder tickets\nlanguage de\nsay halt den Flim an\nsay pasue\nlanguage en\nsay "
      "halt den Flim an\nsay pasue\nlanguage\nlanguage xx\nphrases \"none\"";
  EXPECT_EQ(Errors(Parse(script, "a")),
            "a:3:5: Unknown phrase \"oder tickets\". Did you mean \"order tickets\"?\n"
            "a:5:5: Unknown phrase \"halt den Flim an\". Did you mean \"halt den Film an\"?\n"
            "a:6:5: Unknown phrase \"pasue\". Did you mean \"Pause\"?\n"
            "a:9:5: Unknown phrase \"pasue\". Did you mean \"pause\"?\n"
            "a:10:9: Expected a language, for example de.\n"
            "a:11:10: Unknown language \"xx\". Use en, de, fr, es, ko, or a phrase file that begins with "
            "\"language xx\".\n"
            "a:12:9: The phrase file none can't be read.\n");
}

TEST(VoiceScript, TakesEveryFormOfEveryStatement) {
  auto rows =
      Split(R"(test "a"|language de|note a|say search for "The Sea"|say "pause"|say select The Sea|)"
            R"(send ACTION_CUSTOM "a=b"|inject after 50ms command=x|expect is success|expect no answer|)"
            R"(expect closed|expect action ACTION_PLAY with is ""|within 50 ms|show "#a b" is c|)"
            R"(value "1 + 1" one of 2 3|press OK|press "5" 2 times|press Back 1 time|type `a`|)"
            R"(items count is 3|items count at least 3|items changed none|items changed moved 2|)"
            R"(items changed appeared 2|items changed vanished 2|item 3 focused|item 3 visible|)"
            R"(item 3 hidden|item 3 is "Play"|item "Play" is 3|reload without listening|)"
            R"(open "a.html" without listening for 1 s|restart|restart service|privileges none|)"
            R"(privileges microphone http://a.example/b|clear storage|timeout 1 s|wait 60 s)");
  rows.push_back("phrases \"" + OwnPhrases() + "\"");
  std::string words;
  for (const std::string& row : rows) {
    EXPECT_EQ(Errors(Parse("say pause\n" + row, "a")), "");
    words += row + "\n";
  }
  for (const std::string& word : StatementWords())
    EXPECT_THAT(words, testing::ContainsRegex("(^|\n)" + word + "( |\n)")) << "every statement";
}

TEST(VoiceScript, SaysWhatIsWrongAndWhere) {
  const std::pair<const char*, const char*> rows[] = {
      {"sya pause", "1:1: Unknown statement \"sya\". Did you mean \"say\"?"},
      {"  expect a",
       "1:3: There is no answer to check yet. Add a say, send or inject before this in its test."},
      {"say pause\ntest \"b\"\nwithin 5 ms",
       "3:1: There is no answer to check yet. Add a say, send or inject before this in its test."},
      {"inject after 5 ms a=b\nexpect a",
       "2:1: There is no answer to check yet. Add a say, send or inject before this in its test."},
      {"test a", "1:6: Expected a text in quotation marks."},
      {"test \"a", "1:6: The closing quotation mark is missing."},
      {"test \"a\\xg\"", "1:8: Expected two hexadecimal digits after \\x."},
      {"test \"a\" b", "1:10: Expected the end of the line."},
      {"say", "1:4: Expected a phrase."},
      {"say serch for The Sea",
       "1:5: Unknown phrase \"serch for The Sea\". Did you mean \"search for The Sea\"?"},
      {"send ACTION_PUASE", "1:6: Unknown action ACTION_PUASE. Did you mean \"ACTION_PAUSE\"?"},
      {"send", "1:5: Expected an action, for example ACTION_PLAY."},
      {"inject a=b a=c", "1:12: The key a is given twice."},
      {"inject a", "1:8: Expected key=\"value\"."},
      {"inject", "1:7: Expected key=\"value\"."},
      {"say pause\nexpect json {", "2:13: This is not JSON."},
      {"say pause\nexpect action ACTION_PLAY on", "2:27: Expected with, not \"on\"."},
      {"timeout 5 m", "1:11: Expected ms or s, not \"m\"."},
      {"timeout 500", "1:12: Expected ms or s."},
      {"timeout 3601 s", "1:9: The longest time is one hour."},
      {"timeout -1 s", "1:9: Expected a whole number."},
      {"wait 61 s", "1:6: Expected a pause of at most one minute."},
      {"wait 99999999999999999999 s", "1:6: Expected a whole number."},
      {"show \"#a\"", "1:10: Expected a comparison, for example: is \"Play\"."},
      {"items changed movd 2",
       "1:15: Expected none, moved, appeared or vanished, not \"movd\". Did you mean \"moved\"?"},
      {"press", "1:6: Expected a key, for example OK or \"5\"."},
      {"press Rihgt", "1:7: Unknown key \"Rihgt\". Did you mean \"Right\"?"},
      {"press OK 2", "1:11: Expected times."},
      {"press OK 1001 times", "1:10: A key is pressed at most 1000 times."},
      {"privileges", "1:11: Expected none, microphone, voicecontrol or URIs."},
      {"privileges microfone",
       "1:12: Expected microphone or voicecontrol, not \"microfone\". Did you mean \"microphone\"?"},
  };
  for (const auto& [text, error] : rows)
    EXPECT_EQ(Errors(Parse(text, "a")), std::string("a:") + error + "\n");
}

}  // namespace
}  // namespace corvis::kit
