// The end of pages and of the library, in every order and from within every call. What leaks or is used
// after its end is found by AddressSanitizer, and by what stays open.
#include <algorithm>
#include <array>

#include "failing_memory.h"
#include "library_fixture.h"

namespace {

constexpr const char* kSomeActions = R"("ACTION_PLAY","ACTION_SEARCH")";

void ExpectLeaveTakenOnce(const std::string& context) {
  const Texts sent = fake::Platform::Get().TakeSent();
  const auto count = [&](const char* text) { return std::count(sent.begin(), sent.end(), text); };
  EXPECT_EQ(count("register|com.example.cinema"), count("unregister|com.example.cinema")) << context;
}

// Two pages of which none, one or both listen, and the shutdown: they end in each order.
TEST(Destruction, TwoPagesAndTheShutdownEndInAnyOrder) {
  for (int listening = 0; listening < 4; ++listening) {
    std::array<int, 3> order = {0, 1, 2};
    do {
      const std::string context = std::to_string(listening) + testing::PrintToString(order);
      fake::Platform::Reset();
      {
        fake::Runtime runtime;
        const InstanceHandle pages[] = {runtime.NewPage(), runtime.NewPage()};
        for (int i = 0; i < 2; ++i) {
          if ((listening >> i & 1) != 0) runtime.Call(pages[i], kListen);
        }
        for (const int step : order) {
          fake::Platform::Get().Deliver("ACTION_PLAY", "");
          step == 2 ? runtime.Shutdown() : runtime.DestroyPage(pages[step]);
          fake::Platform::Get().PublishStart();
        }
        ExpectNothingLeft(context);
      }
      ExpectLeaveTakenOnce(context);
    } while (std::next_permutation(order.begin(), order.end()));
  }
}

// Everything that a page does; `runtime` may end it at any time.
void UsePage(fake::Runtime& runtime, InstanceHandle page) {
  fake::Platform& platform = fake::Platform::Get();
  runtime.Call(page, kCheckPrivileges);
  runtime.Call(page, kListen);
  runtime.Call(page, kSetCallback, R"({"actions":[)" + std::string(kSomeActions) + "]}");
  for (const char* action : {"ACTION_PLAY", "ACTION_SEARCH", "ACTION_STOP"}) {
    platform.Deliver(action, fake::Encode({{"title", "a"}}));
    Respond(runtime, page, action, std::string(action == std::string("ACTION_PLAY") ? 40'000 : 7, 'x'));
  }
  platform.PublishStart();
  runtime.DestroyPage(page);
}

void ExpectTheNextPageToWork(fake::Runtime& runtime, const std::string& context) {
  fake::Platform& platform = fake::Platform::Get();
  const InstanceHandle page = runtime.NewListeningPage(kSomeActions);
  EXPECT_TRUE(platform.Deliver("ACTION_PLAY", "1")) << context;
  EXPECT_EQ(runtime.TakePosted(page).size(), 1U) << context;
  runtime.DestroyPage(page);
  ExpectNothingLeft(context);
}

// A platform that runs its main loop within a call may end the page there.
TEST(Destruction, APageEndsWithinAnyCallOfThePlatform) {
  fake::Platform::Reset();
  int total = 0;
  {
    fake::Runtime runtime;
    fake::Platform::Get().on_call = [&] { ++total; };
    UsePage(runtime, runtime.NewPage());
  }
  ASSERT_GT(total, 20);
  for (int nth = 1; nth <= total; ++nth) {
    fake::Platform::Reset();
    fake::Runtime runtime;
    const InstanceHandle page = runtime.NewPage();
    int left = nth;
    fake::Platform::Get().on_call = [&] {
      if (--left == 0) runtime.DestroyPage(page);
    };
    UsePage(runtime, page);
    const std::string context = "within call " + std::to_string(nth);
    EXPECT_LE(left, 0) << context;
    ExpectTheNextPageToWork(runtime, context);
  }
}

// Also the first use of the channel in the process, if this test runs alone.
TEST(Destruction, APageThatNeverListenedEndsWithoutMemory) {
  fake::Platform::Reset();
  fake::Runtime runtime;
  const InstanceHandle page = runtime.NewPage();
  failing_memory::FailAllocations(1, INT_MAX);
  runtime.DestroyPage(page);
  failing_memory::FailNothing();
  ExpectNothingLeft("without memory");
}

TEST(Destruction, APageEndsWithinThePostingOfACommand) {
  using fake::Runtime;
  using End = void (*)(Runtime & runtime, InstanceHandle page, InstanceHandle other);
  const End kEnds[] = {
      [](Runtime& runtime, InstanceHandle page, InstanceHandle) { runtime.DestroyPage(page); },
      [](Runtime& runtime, InstanceHandle, InstanceHandle other) { runtime.DestroyPage(other); },
      [](Runtime& runtime, InstanceHandle page, InstanceHandle other) {
        for (const InstanceHandle each : {other, page}) runtime.DestroyPage(each);
        runtime.NewListeningPage(kSomeActions);
      },
      [](Runtime& runtime, InstanceHandle, InstanceHandle) { runtime.Shutdown(); },
  };
  for (const End end : kEnds) {
    fake::Platform::Reset();
    fake::Runtime runtime;
    const InstanceHandle other = runtime.NewListeningPage(kSomeActions);
    const InstanceHandle page = runtime.NewListeningPage(kSomeActions);
    runtime.on_post = [&](InstanceHandle) { end(runtime, page, other); };
    EXPECT_TRUE(fake::Platform::Get().Deliver("ACTION_SEARCH", fake::Encode({{"title", "a"}})));
    runtime.on_post = nullptr;
    EXPECT_EQ(runtime.TakePosted(page).size(), 1U);
    fake::Platform::Get().Deliver("ACTION_PLAY", "");
    fake::Platform::Get().PublishStart();
  }
}

}  // namespace
