// The path of a command from the port to the page, and of an answer from the page to the service.
#include "library_fixture.h"

namespace {

using testing::ElementsAre;
using testing::EndsWith;

class DeliveryTest : public LibraryTest {
 protected:
  // Registers the action, delivers it, and gives what was posted.
  std::string Delivered(const std::string& action, const std::string& data) {
    const InstanceHandle page = runtime->NewListeningPage('"' + action + '"');
    platform().log.clear();
    platform().Deliver(action, data);
    const Texts posted = runtime->TakePosted(page);
    runtime->DestroyPage(page);
    return posted.size() == 1 ? posted[0] : std::to_string(posted.size()) + " messages";
  }
};

TEST_F(DeliveryTest, PostsTheDataThatTheActionAsksFor) {
  const std::string bundle = fake::EncodeWithArray({{"utterance", "comedies, please"},
                                                    {"content_type", "movie"},
                                                    {"raw", "r"},
                                                    {"rawScore", "9"},
                                                    {"id", "3"}},
                                                   "list");
  const std::string search =
      R"({\"utterance\":\"comedies, please\",\"contentType\":\"movie\",\"rawScore\":\"9\",\"id\":\"3\"})";
  const std::string plain =
      R"({\"utterance\":\"comedies, please\",\"content_type\":\"movie\",\"raw\":\"r\",\"rawScore\":\"9\",\"id\":\"3\"})";
  const std::tuple<const char*, std::string, std::string> kRows[] = {
      {"ACTION_PLAY", "", ""},
      {"ACTION_NAVIGATION", "MoveUpCommand", "MoveUpCommand"},
      {"ACTION_TITLE_SELECTION", "a\"b\\c/d\n\x01\x7f€\xff", "a\\\"b\\\\c/d\\n\\u0001\\u007f€\xff"},
      {"ACTION_PLAY", "\\/", "\\\\/"},
      {"ACTION_SEARCH", bundle, search},
      {"ACTION_DEFAULT_SEARCH", bundle, search},
      {"ACTION_SEARCH_COLLECTION", bundle, search},
      {"ACTION_CUSTOM", bundle, plain},
      {"ACTION_ITEM_SELECTION", bundle, plain},
      {"ACTION_SEARCH", fake::Encode({{"raw", "r"}}), "{}"},
      {"ACTION_SEARCH", "no bundle", "{}"},
      {"ACTION_CUSTOM", "", "{}"},
      {"ACTION_CUSTOM", fake::Encode({}), "{}"},
      {"ACTION_CUSTOM", fake::Encode({{"a", "say \"hi\""}}), R"({\"a\":\"say \"hi\"\"})"},
      {"ACTION_SELECTION", bundle, bundle},
  };
  for (const auto& [action, data, param] : kRows) {
    const std::string name = '"' + std::string(action) + '"';
    EXPECT_EQ(Delivered(action, data),
              R"({"action":)" + name + R"(,"listenerId":)" + name + R"(,"param":")" + param + "\"}");
  }
}

TEST_F(DeliveryTest, AnEntryThatThePlatformDoesNotGiveIsLeftOut) {
  const std::string data = fake::Encode({{"a", "1"}, {"b", "2"}});
  void (*const kFaults[])() = {[] { platform().Fail("bundle_keyval_dup"); },
                               [] { platform().Fail("bundle_keyval_get_basic_val"); },
                               [] { platform().AnswerNull("bundle_keyval_get_basic_val"); }};
  for (const auto spoil : kFaults) {
    for (const char* action : {"ACTION_SEARCH", "ACTION_CUSTOM"}) {
      spoil();
      EXPECT_THAT(Delivered(action, data), EndsWith(R"("param":"{\"b\":\"2\"}"})"));
    }
  }
}

TEST_F(DeliveryTest, AnActionOutsideTheTableIsPostedAndLookedUpThreeTimes) {
  EXPECT_EQ(Delivered("action_play", "1"),
            R"({"action":"action_play","listenerId":"action_play","param":"1"})");
  EXPECT_EQ(platform().LogWith(": map::at").size(), 3U);
}

TEST_F(DeliveryTest, RefusesWhatThePageDidNotRegister) {
  const InstanceHandle page = runtime->NewPage();
  runtime->Call(page, kListen);
  platform().TakeSent();
  const std::tuple<const char*, const char*, bool> kRows[] = {
      {nullptr, "ACTION_PLAY", false},
      {R"("ACTION_PLAY","ACTION_PLAY")", "ACTION_PLAY", true},
      {R"("ACTION_PLAY")", "action_play", false},
      {R"("ACTION_PAUSE")", "ACTION_PLAY", false},
      {R"("ACTION_PAUSE")", "ACTION_PAUSE", true},
      {R"("ACTION_PAUSE")", "", false}};
  for (const auto& [actions, command, posted] : kRows) {
    if (actions != nullptr) {
      runtime->Call(page, kSetCallback, R"({"actions":[)" + std::string(actions) + "]}");
    }
    platform().Deliver(command, "1");
    EXPECT_EQ(runtime->TakePosted(page).size(), posted ? 1U : 0U) << command;
    EXPECT_EQ(platform().TakeSent(), posted ? Texts{} : Texts{"result|not_support"}) << command;
  }
}

TEST_F(DeliveryTest, AnswersUnderTheWordOfTheAction) {
  const InstanceHandle page = runtime->NewPage();
  const std::tuple<const char*, const char*, const char*> kRows[] = {
      {"ACTION_REQUEST_APP_CONTEXT", "List", "appContext|List"},
      {"ACTION_PLAY", "success", "result|success"},
      {"ACTION_REQUEST_CONTENT_CONTEXT", "[]", "result|[]"},
      {"ACTION_UNKNOWN", "", "result|"},
      {"", "x", "result|x"}};
  for (const auto& [action, response, sent] : kRows) {
    EXPECT_EQ(Respond(page, action, response), kSuccess);
    EXPECT_THAT(platform().TakeSent(), ElementsAre(sent));
  }
  EXPECT_EQ(platform().LogWith(": map::at").size(), 2U);
}

TEST_F(DeliveryTest, AMessageWithoutCommandOrDataIsDroppedAfterItsLine) {
  const InstanceHandle page = runtime->NewListeningPage(R"("ACTION_PLAY")");
  platform().TakeSent();
  const std::pair<fake::Entries, const char*> kRows[] = {
      {{}, "Fail to get command from Message"},
      {{{"strData", "x"}}, "Fail to get command from Message"},
      {{{"command", "ACTION_PLAY"}}, "Fail to get data from Message"}};
  for (const auto& [entries, line] : kRows) {
    platform().log.clear();
    platform().Deliver(entries);
    ASSERT_EQ(platform().log.size(), 1U);
    EXPECT_THAT(platform().log[0].text, EndsWith(line));
  }
  for (const int nth : {1, 2}) {
    platform().AnswerNull("bundle_get_str", nth);
    platform().log.clear();
    platform().Deliver("ACTION_PLAY", "1");
    EXPECT_EQ(platform().LogWith(nth == 1 ? "Fail to get command" : "Fail to get data").size(), 1U);
  }
  EXPECT_THAT(platform().TakeSent(), ElementsAre());
  platform().Deliver({{"strData", "1"}, {"extra", "x"}, {"command", "ACTION_PLAY"}});
  EXPECT_EQ(runtime->TakePosted(page).size(), 1U);
}

}  // namespace
