// Every call of the platform fails once, and every call from one on fails for good, through a whole life of
// the library. How many calls there are is counted, not listed.
#include "library_fixture.h"

namespace {

constexpr const char* kActions = R"("ACTION_PLAY","ACTION_SEARCH","ACTION_CUSTOM")";

// Answers of this many bytes: none, whole, at the limit, and in two and more pieces.
constexpr size_t kAnswerSizes[] = {0, 1, 24, 12'200, 12'300, 40'000};

void ExpectOneReply(const std::string& reply) {
  EXPECT_THAT(reply, testing::MatchesRegex(R"re(\{"(status|error|result)":.*)re"));
}

void UseEverything() {
  fake::Platform& platform = fake::Platform::Get();
  fake::Runtime runtime;
  InstanceHandle page = runtime.NewPage();
  for (const char* handler : {kCheckPrivileges, kGetVersion, kListen, kListen}) {
    ExpectOneReply(runtime.Call(page, handler));
  }
  ExpectOneReply(runtime.Call(page, kSetCallback, R"({"actions":[)" + std::string(kActions) + "]}"));
  const std::string data = fake::EncodeWithArray({{"title", "a"}, {"raw", "b"}}, "list");
  for (const char* action : {"ACTION_PLAY", "ACTION_SEARCH", "ACTION_CUSTOM", "ACTION_STOP"}) {
    platform.Deliver(action, data);
  }
  for (const size_t size : kAnswerSizes)
    ExpectOneReply(Respond(runtime, page, "ACTION_PLAY", std::string(size, 'x')));
  platform.PublishStart();
  platform.Deliver({{"command", "ACTION_PLAY"}});
  runtime.DestroyPage(page);
  runtime.NewListeningPage(kActions);
  platform.PublishStart();
  platform.Deliver("ACTION_PLAY", "");
}

// What a failed call leaves in the log, for the calls whose failure has a line of its own.
const std::map<std::string, std::string> kLines = {
    {"bundle_add", "Fail to create bundle for message"},
    {"bundle_encode", "Fail to encode the message"},
    {"message_port_send_message com.kelvaro.tv.vif com.port.vif.voiceinteraction",
     "Fail to send bundle for message"},
    {"message_port_unregister_local_port",
     "Failed to unregister local port listener during instance destructor."},
    {"event_add_event_handler event.com.kelvaro.tv.vif.InitEvent", "ListenInitEvent Result [-1]"},
    {"event_remove_event_handler", "ListenInitEvent Result [-1]"},
    {"vestra_configuration_create", "vestra_configuration_create [-1] failed!"},
    {"vestra_configuration_set_cache_size 100", "vestra_configuration_set_cache_size [-1] failed!"},
    {"vestra_initialize", "vestra_initialize [-1] failed!"},
};

void ExpectTheNextGoodCommandToWork(const std::string& context) {
  fake::Platform& platform = fake::Platform::Get();
  platform.FailNothing();
  fake::Runtime runtime;
  const InstanceHandle page = runtime.NewListeningPage(kActions);
  platform.TakeSent();
  EXPECT_TRUE(platform.Deliver("ACTION_PLAY", "1")) << context;
  EXPECT_EQ(runtime.TakePosted(page).size(), 1U) << context;
  Respond(runtime, page, "ACTION_PLAY", "success");
  EXPECT_EQ(platform.TakeSent(), Texts{"result|success"}) << context;
}

TEST(FailureSweep, NoFailingCallBreaksTheLibrary) {
  fake::Platform::Reset();
  UseEverything();
  const int total = fake::Platform::Get().total_calls;
  ASSERT_GT(total, 300);
  for (int nth = 1; nth <= total; ++nth) {
    for (const bool for_ever : {false, true}) {
      fake::Platform::Reset();
      fake::Platform::Get().FailCall(nth, for_ever);
      UseEverything();
      EXPECT_NO_THROW(fake::Platform::Get().TakeSent()) << "a message without all its entries was sent";
      const std::string& call = fake::Platform::Get().first_failed;
      const std::string context =
          "call " + std::to_string(nth) + ", " + call + (for_ever ? ", for good" : "");
      const auto line = kLines.find(call);
      if (line != kLines.end() && !for_ever) {
        EXPECT_FALSE(fake::Platform::Get().LogWith(line->second).empty()) << context;
      }
      ExpectTheNextGoodCommandToWork(context);
      if (testing::Test::HasFailure()) return;
    }
  }
}

}  // namespace
