// Every call of the platform and every allocation of the library fails once, every one from one on fails for
// good, and every call answers null once, through a whole life of the library. How many there are is counted,
// not listed.
#include <algorithm>

#include "failing_memory.h"
#include "library_fixture.h"

namespace {

constexpr const char* kActions = R"("ACTION_PLAY","ACTION_SEARCH","ACTION_CUSTOM")";

// Answers of this many bytes: none, whole, at the limit, and in two and more pieces.
constexpr size_t kAnswerSizes[] = {0, 1, 24, 12'200, 12'300, 40'000};

void ExpectOneReply(const std::string& reply) {
  EXPECT_THAT(reply, testing::MatchesRegex(R"re(\{"(status|error|result)":.*)re"));
}

// The data of a command: many short entries, so that their JSON is longer than the bundle.
std::string Data() {
  fake::Entries entries = {{"title", "a"}, {"raw", "b"}};
  for (char key = 'a'; key <= 'z'; ++key) entries.emplace_back(std::string(1, key), "1");
  return fake::EncodeWithArray(entries, "list");
}

struct Use {
  size_t delivered = 0;
  Texts posted;
};

Use UseEverything() {
  fake::Platform& platform = fake::Platform::Get();
  fake::Runtime runtime;
  Use use;
  if (runtime.status != 0) return use;
  runtime.on_post = [&](InstanceHandle page) { use.posted.push_back(runtime.posted[page].back()); };
  const auto deliver = [&](const fake::Entries& command) {
    use.delivered += platform.Deliver(command) ? 1 : 0;
  };
  const InstanceHandle page = runtime.NewPage();
  for (const char* handler : {kCheckPrivileges, kGetVersion, kListen, kListen}) {
    ExpectOneReply(runtime.Call(page, handler));
  }
  const std::string reply =
      runtime.Call(page, kSetCallback, R"({"actions":[)" + std::string(kActions) + "]}");
  ExpectOneReply(reply);
  for (const char* action : {"ACTION_PLAY", "ACTION_SEARCH", "ACTION_CUSTOM", "ACTION_STOP"}) {
    deliver({{"command", action}, {"strData", Data()}});
  }
  // What the page is told was not registered is not.
  EXPECT_TRUE(use.posted.empty() || reply.find("std::bad_alloc") == std::string::npos);
  for (const size_t size : kAnswerSizes)
    ExpectOneReply(Respond(runtime, page, "ACTION_PLAY", std::string(size, 'x')));
  platform.PublishStart();
  deliver({{"command", "ACTION_PLAY"}});
  runtime.DestroyPage(page);
  runtime.NewListeningPage(kActions);
  platform.PublishStart();
  deliver({{"command", "ACTION_PLAY"}, {"strData", ""}});
  return use;
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
  failing_memory::FailNothing();
  fake::Runtime runtime;
  const InstanceHandle page = runtime.NewListeningPage(kActions);
  platform.TakeSent();
  EXPECT_TRUE(platform.Deliver("ACTION_PLAY", "1")) << context;
  EXPECT_EQ(runtime.TakePosted(page).size(), 1U) << context;
  Respond(runtime, page, "ACTION_PLAY", "success");
  EXPECT_EQ(platform.TakeSent(), Texts{"result|success"}) << context;
}

void ExpectNoLeftoverToBeUsed(const std::string& context) {
  EXPECT_THAT(fake::Platform::Get().LogWith(fake::kLeftover), testing::IsEmpty()) << context;
  for (const fake::Entries& message : fake::Platform::Get().sent) {
    for (const auto& [key, value] : message) EXPECT_NE(value, fake::kLeftover) << context;
  }
}

TEST(FailureSweep, NoFailingCallBreaksTheLibrary) {
  using fake::Outcome;
  fake::Platform::Reset();
  UseEverything();
  const int total = fake::Platform::Get().total_calls;
  ASSERT_GT(total, 300);
  const std::tuple<Outcome, bool, const char*> kEnds[] = {{Outcome::kFailed, false, ""},
                                                          {Outcome::kFailed, true, ", for good"},
                                                          {Outcome::kNull, false, " answers null"}};
  for (int nth = 1; nth <= total; ++nth) {
    for (const auto& [outcome, for_ever, how] : kEnds) {
      fake::Platform::Reset();
      fake::Platform::Get().EndCall(nth, outcome, for_ever);
      UseEverything();
      const std::string& call = fake::Platform::Get().first_failed;
      const std::string context = "call " + std::to_string(nth) + ", " + call + how;
      ExpectNothingLeft(context);
      ExpectNoLeftoverToBeUsed(context);
      EXPECT_NO_THROW(fake::Platform::Get().TakeSent()) << "a message without all its entries was sent";
      const auto line = kLines.find(call);
      if (line != kLines.end() && outcome == Outcome::kFailed && !for_ever) {
        EXPECT_FALSE(fake::Platform::Get().LogWith(line->second).empty()) << context;
      }
      ExpectTheNextGoodCommandToWork(context);
      if (testing::Test::HasFailure()) return;
    }
  }
}

// Every registration is ended before the next; every command is posted, refused or logged.
void ExpectSynchronized(const Use& use, const std::string& context) {
  int registered = 0;
  size_t refused = 0;
  for (const std::string& message : fake::Platform::Get().TakeSent()) {
    registered += message == "register|com.example.cinema" ? 1 : 0;
    registered -= message == "unregister|com.example.cinema" ? 1 : 0;
    refused += message == "result|not_support" ? 1 : 0;
    EXPECT_TRUE(registered == 0 || registered == 1) << context;
  }
  EXPECT_EQ(registered, 0) << context;
  const size_t logged = fake::Platform::Get().LogWith(" OnMessageReceived(").size();
  EXPECT_EQ(use.delivered, use.posted.size() + refused + logged) << context;
}

TEST(FailureSweep, NoFailingAllocationBreaksTheLibrary) {
  fake::Platform::Reset();
  failing_memory::FailNothing();
  const Texts good = UseEverything().posted;
  const int total = failing_memory::Allocations();
  ASSERT_GT(total, 300);
  for (int nth = 1; nth <= total; ++nth) {
    for (const int last : {nth, INT_MAX}) {
      const std::string context = "allocation " + std::to_string(nth) + (last == nth ? "" : ", for good");
      fake::Platform::Reset();
      failing_memory::FailAllocations(nth, last);
      const Use use = UseEverything();
      ExpectNothingLeft(context);
      ExpectSynchronized(use, context);
      // No page gets a part of a command's data.
      EXPECT_THAT(use.posted, testing::Each(testing::AnyOfArray(good))) << context;
      ExpectTheNextGoodCommandToWork(context);
      if (testing::Test::HasFailure()) return;
    }
  }
}

}  // namespace
