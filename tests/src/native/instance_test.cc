// The life of a page's object: what it calls of the platform and in which order, its handlers, and its end.
#include "library_fixture.h"

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::MatchesRegex;

constexpr const char* kSend = "message_port_send_message com.kelvaro.tv.vif com.port.vif.voiceinteraction";
constexpr const char* kAddHandler = "event_add_event_handler event.com.kelvaro.tv.vif.InitEvent";
constexpr const char* kRegisterPort = "message_port_register_local_port";

using InstanceTest = LibraryTest;

TEST_F(InstanceTest, ConstructionOpensNothingAndLogsTheVersionTwice) {
  platform().log.clear();
  runtime->NewPage();
  EXPECT_THAT(platform().calls, ElementsAre());
  ASSERT_EQ(platform().log.size(), 5U);  // the runtime's callback and the constructor, and between them:
  const fake::LogLine& line = platform().log[2];
  EXPECT_EQ(std::tie(line.priority, line.tag), std::make_tuple(6, "WEB-VIHandler"));
  const char* const kText =
      R"(\[v1\.0\.8\] VoiceInteractionInstance\([0-9]+\): VoiceInteractionInstance \[1\.0\.8\])";
  EXPECT_THAT(line.text, MatchesRegex(kText));
}

TEST_F(InstanceTest, ListenOpensThePortOnceAndSubscribesOnce) {
  const InstanceHandle page = runtime->NewPage();
  EXPECT_EQ(runtime->Call(page, kListen, R"({"unknown":[1]})"), kSuccess);
  EXPECT_THAT(platform().TakeCalls(),
              ElementsAre("app_manager_get_app_id", kRegisterPort, kSend, kAddHandler));
  EXPECT_EQ(platform().ports.begin()->second.name, "com.port.vif.voiceinteraction");
  EXPECT_THAT(platform().TakeSent(), ElementsAre("register|com.example.cinema"));

  platform().app_id = "com.example.other";
  EXPECT_EQ(runtime->Call(page, kListen), kSuccess);
  EXPECT_THAT(platform().TakeCalls(), ElementsAre("app_manager_get_app_id"));
  runtime->DestroyPage(page);
  EXPECT_THAT(platform().TakeCalls(),
              ElementsAre("event_remove_event_handler", kSend, "message_port_unregister_local_port"));
  EXPECT_THAT(platform().TakeSent(), ElementsAre("unregister|com.example.other"));
}

TEST_F(InstanceTest, APageThatNeverListenedLeavesQuietly) {
  runtime->DestroyPage(runtime->NewPage());
  EXPECT_THAT(platform().calls, ElementsAre());
}

TEST_F(InstanceTest, ARefusedSubscriptionIsTriedAgainAndNotRemoved) {
  const InstanceHandle page = runtime->NewPage();
  platform().Fail(kAddHandler);
  EXPECT_EQ(runtime->Call(page, kListen), kSuccess);
  EXPECT_EQ(platform().PublishStart(), 0);
  EXPECT_EQ(platform().LogWith("ListenInitEvent Result [-1]").size(), 1U);
  runtime->Call(page, kListen);
  EXPECT_EQ(platform().PublishStart(), 1);
  const InstanceHandle refused = runtime->NewPage();
  platform().Fail(kAddHandler);
  runtime->Call(refused, kListen);
  platform().calls.clear();
  runtime->DestroyPage(refused);
  EXPECT_THAT(platform().calls, ElementsAre(kSend, "message_port_unregister_local_port"));
}

// The id counts, not the status.
TEST_F(InstanceTest, WithoutAnApplicationIdListeningGoesOn) {
  platform().AnswerNull("app_manager_get_app_id");
  const InstanceHandle page = runtime->NewPage();
  runtime->Call(page, kListen);
  EXPECT_THAT(platform().TakeSent(), ElementsAre("register|"));
  EXPECT_THAT(platform().LogWith("CurrentApplication Id"), ElementsAre(EndsWith("CurrentApplication Id []")));
  platform().Fail("app_manager_get_app_id");
  runtime->Call(page, kListen);
  EXPECT_EQ(platform().LogWith("CurrentApplication Id [com.example.cinema]").size(), 1U);
}

TEST_F(InstanceTest, TheServicesStartRenewsTheRegistrationOncePerPage) {
  runtime->NewListeningPage("");
  platform().TakeSent();
  platform().PublishStart();
  EXPECT_THAT(platform().TakeSent(),
              ElementsAre("unregister|com.example.cinema", "register|com.example.cinema"));
  runtime->NewListeningPage("");
  platform().PublishStart();
  EXPECT_EQ(platform().TakeSent().size(), 4U);
  EXPECT_EQ(platform().ports.size(), 1U);
  platform().events.begin()->second.first("event", nullptr, nullptr);
  EXPECT_THAT(platform().TakeSent(), ElementsAre());
  EXPECT_EQ(platform().LogWith("Invalid instance data").size(), 1U);
}

// The channel keeps the address of the page that listened last. When another page's start-up event opened
// the port again after that page had gone, a command was handed to freed memory.
TEST_F(InstanceTest, ACommandForAPageThatIsGoneIsDropped) {
  runtime->NewListeningPage("");
  const InstanceHandle gone = runtime->NewListeningPage(R"("ACTION_PLAY")");
  runtime->DestroyPage(gone);
  EXPECT_FALSE(platform().Deliver("ACTION_PLAY", ""));
  platform().PublishStart();
  platform().TakeSent();
  // A new page may get the address of the old one; as long as it does not listen, nothing is meant for it.
  const InstanceHandle fresh = runtime->NewPage();
  runtime->Call(fresh, kSetCallback, R"({"actions":["ACTION_PLAY"]})");
  EXPECT_TRUE(platform().Deliver("ACTION_PLAY", ""));
  EXPECT_EQ(platform().LogWith("Invalid instance data").size(), 1U);
  EXPECT_THAT(platform().TakeSent(), ElementsAre());
  EXPECT_THAT(runtime->TakePosted(fresh), ElementsAre());

  // The end of a page that listened earlier takes nothing from the one that listened last.
  const InstanceHandle last = runtime->NewListeningPage(R"("ACTION_PLAY")");
  runtime->DestroyPage(fresh);
  platform().PublishStart();
  EXPECT_TRUE(platform().Deliver("ACTION_PLAY", ""));
  EXPECT_EQ(runtime->TakePosted(last).size(), 1U);
}

TEST_F(InstanceTest, TextsOfAnyLengthAndPercentSignsReachTheLogWhole) {
  const std::string text = "100%s%n" + std::string(100'000, 'x');
  Respond(runtime->NewListeningPage(""), "ACTION_PLAY", text);
  EXPECT_EQ(platform().LogWith("response for action[ACTION_PLAY] response[" + text + "]").size(), 1U);
  EXPECT_EQ(platform().LogWith("Send [result] [" + text + "]").size(), 1U);
}

TEST_F(InstanceTest, EveryHandlerAnswersOnceWhateverItIsGiven) {
  const char* const not_array = "actions is not array";
  const char* const no_action = "action is not string";
  const char* const no_response = "response is not string";
  const std::tuple<const char*, const char*, const char*> kRows[] = {
      {kCheckPrivileges, "null", ""},
      {kSetCallback, R"({"actions":[]})", ""},
      {kSetCallback, R"({"actions":["ACTION_PLAY",5]})", "actions contains an element that is not string"},
      {kSetCallback, R"({"actions":"ACTION_PLAY"})", not_array},
      {kSetCallback, "{}", not_array},
      {kSetCallback, "null", not_array},
      {kSetCallback, "[]", not_array},
      {kResponse, R"({"action":"","response":""})", ""},
      {kResponse, R"({"response":"success"})", no_action},
      {kResponse, R"({"action":null,"response":"success"})", no_action},
      {kResponse, "7", no_action},
      {kResponse, R"({"action":"ACTION_PLAY"})", no_response},
      {kResponse, R"({"action":"ACTION_PLAY","response":{}})", no_response},
  };
  const InstanceHandle page = runtime->NewListeningPage(R"("ACTION_PLAY")");
  EXPECT_EQ(runtime->Call(page, kGetVersion, "[]"), R"({"result":"1.0.8","status":"success"})");
  for (const auto& [handler, arguments, message] : kRows) {
    platform().log.clear();
    const std::string reply = *message == '\0' ? kSuccess : ErrorReply("TypeMismatchError", message);
    EXPECT_EQ(runtime->Call(page, handler, arguments), reply) << handler << arguments;
    EXPECT_EQ(platform().LogWith("> Reporting error.").size(), *message == '\0' ? 0U : 1U) << arguments;
  }
  // The old registry is gone before the argument is looked at.
  platform().TakeSent();
  platform().Deliver("ACTION_PLAY", "");
  EXPECT_THAT(platform().TakeSent(), ElementsAre("result|not_support"));
}

}  // namespace
