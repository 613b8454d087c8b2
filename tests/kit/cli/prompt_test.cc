// The prompt's own commands, without an application: no bus can be reached.
#include "cli/prompt.h"

#include <gmock/gmock.h>

#include <sys/resource.h>

#include <csignal>
#include <cstdlib>
#include <deque>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "service/voice_service.h"

namespace corvis::kit {

namespace {

using testing::AllOf;
using testing::HasSubstr;

// Lines that are typed one after the other, and what is shown.
struct TypedLines : public LineSource {
  explicit TypedLines(std::deque<std::string> typed) : left(std::move(typed)) {}

  std::optional<std::string> Next() override {
    if (left.empty()) return {};
    std::string line = left.front();
    left.pop_front();
    return line;
  }
  void Show(const std::string& lines) override { shown += lines + "\n"; }

  std::deque<std::string> left;
  std::string shown;
};

class PromptTest : public testing::Test {
 protected:
  PromptTest() { setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere/bus", 1); }

  // What the prompt shows of these lines.
  std::string Type(const std::deque<std::string>& typed) {
    TypedLines lines(typed);
    VoiceService service([](const std::string&) {});
    Conversation conversation(service, "com.example.app", std::chrono::milliseconds(100));
    Prompt(conversation, lines).Run();
    lines_left_ = lines.left.size();
    return lines.shown;
  }

  size_t lines_left_ = 0;
};

TEST_F(PromptTest, EveryLineGetsItsSentence) {
  const struct {
    const char* line;
    const char* shown;
  } rows[] = {
      {"  pley", "Did you mean \"play\"?"},
      {"say \"pley\"", "\"pley\""},
      {"items --dif", "Expected --diff or --png FILE after items, not --dif."},
      {"items --png", "Expected --diff or --png FILE after items, not --png."},
      {"ACTION_CUSTOM a=1 a=2", "a"},
      {"ACTION_NONSENSE", "ACTION_NONSENSE"},
      {"apps", "No application is registered"},
      {"commands", "has not registered since the prompt began"},
      {"press Bakc", "Unknown key \"Bakc\". Did you mean \"Back\"?"},
      {"type x", "Expected a text in quotation marks."},
      {"record", "Expected a file name or stop after record."},
      {"record stop", "No recording is in progress."},
      {"record /dev/null/a.voice", "can't be written"},
      {"restart", "bus"},
      {"help pres", "Unknown topic \"pres\". Did you mean \"press\"?"},
      {"help press ", "PlayPause"},
      {"help ACTION_MEDIA_SET_ZOOM", "Data\n  in"},
      {"help subtitles", "ACTION_MEDIA_SET_SUBTITLE"},
      {"show \"#a\" equals \"b\"", "Unknown comparison \"equals\"."},
  };
  for (const auto& row : rows) EXPECT_THAT(Type({row.line}), HasSubstr(row.shown)) << row.line;
  EXPECT_EQ(Type({"", "   ", "# pause"}), "");
}

TEST_F(PromptTest, HelpListsCommandsAndPhrases) {
  EXPECT_THAT(Type({"help"}), AllOf(HasSubstr("items [--diff]"), HasSubstr("record FILE"),
                                    HasSubstr("ACTION_PLAY"), HasSubstr("{title}   ")));
}

TEST(Completion, InsertsWhatIsCertain) {
  const std::vector<std::string> words = {"play", "pause", "play from {time}", "quit", "éa", "éb",
                                          "öé",   "öè"};
  const struct {
    const char* typed;
    const char* insertion;
    std::vector<std::string> words;
  } rows[] = {
      {"q", "uit ", {"quit"}},
      {"quit", " ", {"quit"}},
      {"pl", "ay", {"play", "play from {time}"}},
      {"play", "", {"play", "play from {time}"}},
      {"p", "", {"play", "pause", "play from {time}"}},
      {"x", "", {}},
      {"quits", "", {}},
      {"PL", "ay", {"play", "play from {time}"}},
      {"é", "", {"éa", "éb"}},
      {"ö", "", {"öé", "öè"}},
  };
  for (const auto& row : rows) {
    const Completion completion = Complete(row.typed, words);
    EXPECT_EQ(completion.insertion, row.insertion) << row.typed;
    EXPECT_EQ(completion.words, row.words) << row.typed;
  }
}

TEST_F(PromptTest, ContinuationsDependOnTheBeginning) {
  TypedLines lines({});
  VoiceService service([](const std::string&) {});
  Conversation conversation(service, "com.example.app", std::chrono::milliseconds(100));
  const Prompt prompt(conversation, lines);
  const std::pair<const char*, const char*> rows[] = {{"p", "press"},
                                                      {"ACTION_", "ACTION_PLAY"},
                                                      {"press ", "press ChannelUp"},
                                                      {"record s", "record stop"},
                                                      {"ACTION_NAVIGATION ", "ACTION_NAVIGATION ShowMore"}};
  for (const auto& [typed, line] : rows)
    EXPECT_THAT(prompt.Continuations(typed), testing::Contains(line)) << typed;
  EXPECT_EQ(SelectingPart(conversation.phrases(), "click on Pl"), "click on ");
  EXPECT_EQ(SelectingPart(conversation.phrases(), "go to Pl"), "");
}

TEST_F(PromptTest, QuitLeavesTheRest) {
  Type({"help", "quit", "help", "help"});
  EXPECT_EQ(lines_left_, 2U);
}

TEST_F(PromptTest, WhatIsRecordedIsAScript) {
  const std::filesystem::path file = std::filesystem::path(testing::TempDir()) / "recorded.voice";
  std::filesystem::remove(file);
  Type({"record " + file.string(), "pley", "pause", "record stop", "play"});
  std::ostringstream text;
  text << std::ifstream(file).rdbuf();
  EXPECT_THAT(text.str(),
              AllOf(HasSubstr("# not sent: pley\n"), HasSubstr("say \"pause\"\nexpect no answer\n")));
  EXPECT_THAT(text.str(), testing::Not(HasSubstr("play\"")));
  EXPECT_THAT(Type({"record " + file.string()}), HasSubstr("File exists"));
}

TEST_F(PromptTest, ARecordingThatCanNotGoOnIsReportedOnce) {
  const std::filesystem::path file = std::filesystem::path(testing::TempDir()) / "full.voice";
  std::filesystem::remove(file);
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  rlimit small = before;
  small.rlim_cur = 200;
  setrlimit(RLIMIT_FSIZE, &small);
  const std::string shown =
      Type({"record " + file.string(), "say " + std::string(200, 'x'), "pley", "record stop"});
  setrlimit(RLIMIT_FSIZE, &before);
  EXPECT_THAT(shown, AllOf(HasSubstr("can't be written: File too large."),
                           HasSubstr("No recording is in progress.")));
}

}  // namespace

}  // namespace corvis::kit
