// The statements of voice scripts, and what is said about wrong ones.
#include "script/script_reader.h"

#include <gmock/gmock.h>

#include <set>

#include "language/actions.h"

namespace corvis::kit {
namespace {

using std::chrono::milliseconds;

std::string List(const Step& step) {
  std::string text = NameOf(step.kind) + std::string("|") + step.text + "|";
  if (step.has_matcher) text += Describe(step.matcher);
  text += "|" + std::to_string(step.number) + (step.is_at_least ? "+" : "") + "|" +
          std::to_string(step.duration.count()) + (step.is_listening ? "" : " quiet") + "|";
  text += DescribeData({"", "", step.entries, true});
  for (const std::string& word : step.words) text += word + " ";
  return text;
}

TEST(VoiceScript, Statements) {
  const std::pair<const char*, const char*> rows[] = {
      {"test \"a # b\"", "test|a # b||0|0|"},
      {"note  say what  ", "note|say what||0|0|"},
      {"say search for \"The Sea\"", "say|search for \"The Sea\"||0|0|"},
      {"say \"pause\"", "say|pause||0|0|"},
      {"say select The Sea", "say|select The Sea||0|0|"},
      {"\tsend ACTION_CUSTOM \"a=b\"", "send|ACTION_CUSTOM \"a=b\"||0|0|"},
      {"inject after 50ms command=x strData=\"a \\\"b\\\"\" c=",
       "inject|||0|50|command=x strData=\"a \"b\"\" c=\"\""},
      {"expect \"a\\n\\\"\"", "expect||\"a\\n\\\"\"|0|0|"},
      {"expect is success", "expect||\"success\"|0|0|"},
      {"expect contains `\"a\\n\"`", "expect||contains \"\\\"a\\\\n\\\"\"|0|0|"},
      {"expect matches /a\\/b\\d/", "expect||matches /a/b\\d/|0|0|"},
      {"expect json {\"a\": 1}", "expect||json {\"a\": 1}|0|0|"},
      {"expect one of a \"b c\"", "expect||one of \"a\", \"b c\"|0|0|"},
      {"expect no answer within 2 s", "expect|||0|2000|"},
      {"expect action ACTION_PLAY with is \"\"", "expect|ACTION_PLAY|\"\"|0|0|"},
      {"within 50 ms", "within|||0|50|"},
      {"show \"#a b\" is c", "show|#a b|\"c\"|0|0|"},
      {"value \"1 + 1\" one of 2 3", "value|1 + 1|one of \"2\", \"3\"|0|0|"},
      {"items count is 3", "items|||3|0|"},
      {"items count at least 3", "items|||3+|0|"},
      {"items changed none", "items|none||0|0|"},
      {"items changed moved 2", "items|moved||2|0|"},
      {"item 3 focused", "item|focused||3|0|"},
      {"item 3 is \"Play\"", "item||\"Play\"|3|0|"},
      {"item \"Play\" is 3", "item|Play||3|0|"},
      {"reload", "reload|||0|0|"},
      {"reload without listening", "reload|||0|500 quiet|"},
      {"open \"a.html\" without listening for 1 s", "open|a.html||0|1000 quiet|"},
      {"restart service", "restart|||0|0|"},
      {"privileges none", "privileges|||0|0|"},
      {"privileges microphone http://a.example/b", "privileges|||0|0|microphone http://a.example/b "},
      {"timeout 1 s", "timeout|||0|1000|"},
      {"wait 500 ms", "wait|||0|500|"},
      {"wait 60 s", "wait|||0|60000|"},
  };
  std::set<StepKind> kinds;
  for (const auto& [line, listed] : rows) {
    const VoiceScript script =
        ParseVoiceScript(std::string("say pause\n") + line + "\r\n\n  # end", "a.voice");
    for (const ScriptError& error : script.errors) ADD_FAILURE() << Located("a", error.place, error.sentence);
    ASSERT_EQ(script.steps.size(), 2U) << line;
    EXPECT_EQ(List(script.steps[1]), listed);
    EXPECT_EQ(script.steps[1].place.line, 2);
    kinds.insert(script.steps[1].kind);
  }
  EXPECT_EQ(kinds.size(), static_cast<size_t>(StepKind::kWait) + 1) << "every kind of step";
}

TEST(VoiceScript, Errors) {
  const std::pair<const char*, const char*> rows[] = {
      {"sya pause", "1:1: There is no statement \"sya\". Did you mean \"say\"?"},
      {"  expect a", "1:3: Nothing has been said yet; a say, send or inject stands before this."},
      {"say pause\ntest \"b\"\nwithin 5 ms",
       "3:1: Nothing has been said yet; a say, send or inject stands before this."},
      {"test a", "1:6: Here stands a text in quotation marks."},
      {"test \"a", "1:6: The closing quotation mark is missing."},
      {"test \"a\" b", "1:10: The line should end here."},
      {"say", "1:4: Here stands what is said."},
      {"say serch for The Sea",
       "1:5: Nothing is known for \"serch for The Sea\". Did you mean \"search for The Sea\"?"},
      {"send ACTION_PUASE", "1:6: There is no action ACTION_PUASE. Did you mean \"ACTION_PAUSE\"?"},
      {"send", "1:5: Here stands an action, such as ACTION_PLAY."},
      {"send ACTION_CUSTOM \"a", "1:20: Missing closing quotation mark."},
      {"inject a=b a=c", "1:12: The key a stands here twice."},
      {"inject a", "1:8: Here stands key=\"value\"."},
      {"inject", "1:7: Here stands key=\"value\"."},
      {"say pause\nexpect matches a", "2:16: Here stands a regular expression between slashes."},
      {"say pause\nexpect matches /a", "2:16: The closing / is missing."},
      {"say pause\nexpect json {", "2:14: This is no JSON."},
      {"say pause\nexpect one of", "2:14: Here stand the texts that are allowed."},
      {"say pause\nexpect action ACTION_PLAY on", "2:27: Here stands one of with, not \"on\"."},
      {"timeout 5 m", "1:11: Here stands one of ms, s, not \"m\"."},
      {"timeout 2 hours", "1:11: Here stands one of ms, s, not \"hours\"."},
      {"timeout 3601 s", "1:9: An hour is the longest time."},
      {"timeout -1 s", "1:9: Here stands a whole number."},
      {"wait 61 s", "1:6: A minute is the longest pause."},
      {"wait 99999999999999999999 s", "1:6: Here stands a whole number."},
      {"show \"#a\"", "1:10: Here stands what it should be, such as is \"Play\"."},
      {"items changed movd 2",
       "1:15: Here stands one of none, moved, appeared, vanished, not \"movd\". Did you mean \"moved\"?"},
      {"privileges", "1:11: Here stands none, or microphone, voicecontrol or URIs."},
      {"privileges microfone",
       "1:12: Here stands one of microphone, voicecontrol, not \"microfone\". Did you mean \"microphone\"?"},
  };
  for (const auto& [text, error] : rows) {
    const VoiceScript script = ParseVoiceScript(text, "a.voice");
    ASSERT_EQ(script.errors.size(), 1U) << text;
    EXPECT_EQ(Located("a", script.errors[0].place, script.errors[0].sentence), std::string("a:") + error);
  }
}

}  // namespace
}  // namespace corvis::kit
