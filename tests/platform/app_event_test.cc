// Application events, published by another process.
#include "nurvo/app_event.h"

#include <systemd/sd-bus.h>

#include "bus_fixture.h"
#include "nurvo_desktop/bus.h"
#include "nurvo_desktop/event_publish.h"

namespace {

constexpr const char* kEvent = "event.com.example.Started";

class AppEventTest : public BusTest {
 protected:
  struct Subscription {
    std::vector<std::string> ids;
    event_handler_h handle = nullptr;
    event_handler_h remove_on_event = nullptr;
  };

  static int Subscribe(Subscription& subscription, const char* name = kEvent) {
    return event_add_event_handler(name, OnEvent, &subscription, &subscription.handle);
  }

  static void OnEvent(const char* name, bundle* data, void* user_data) {
    auto& self = *static_cast<Subscription*>(user_data);
    self.ids.push_back(std::string(name) + ' ' + TextOf(data, "id"));
    if (self.remove_on_event != nullptr) {
      EXPECT_EQ(event_remove_event_handler(self.remove_on_event), 0);
      self.remove_on_event = nullptr;
    }
  }
};

TEST_F(AppEventTest, ReachesEverySubscriberOfItsNameUntilItIsRemoved) {
  const auto peer = StartPeer();
  Subscription once;
  Subscription always;
  Subscription other;
  const int results[] = {Subscribe(once), Subscribe(always), Subscribe(other, "event.com.example.Other")};
  for (const int result : results) ASSERT_EQ(result, 0);
  once.remove_on_event = once.handle;

  for (const char* id : {"1", "2"}) Send({{"do", "publish"}, {"event", kEvent}, {"id", id}});
  ASSERT_TRUE(WaitFor([&] { return always.ids.size() == 2; }));
  EXPECT_EQ(always.ids, (std::vector<std::string>{std::string(kEvent) + " 1", std::string(kEvent) + " 2"}));
  EXPECT_EQ(once.ids.size(), 1U);
  EXPECT_TRUE(other.ids.empty());
  EXPECT_LT(event_remove_event_handler(once.handle), 0);
  EXPECT_EQ(event_remove_event_handler(always.handle), 0);
  EXPECT_EQ(event_remove_event_handler(other.handle), 0);
}

TEST_F(AppEventTest, DropsWhatHoldsNoBundle) {
  Subscription subscription;
  ASSERT_EQ(Subscribe(subscription), 0);
  ::testing::internal::CaptureStderr();
  sd_bus* const bus = nurvo_bus();
  for (const char* signature : {"s", "say"}) {
    EXPECT_GE(sd_bus_emit_signal(bus, "/nurvo/event", "nurvo.Event", "Published", signature, kEvent, 1, 'x'),
              0);
  }
  EXPECT_EQ(event_publish_app_event(kEvent, nullptr), 0);
  EXPECT_TRUE(WaitFor([&] { return !subscription.ids.empty(); }));
  const std::string log = ::testing::internal::GetCapturedStderr();
  EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 2) << log;
  EXPECT_EQ(subscription.ids.size(), 1U);
  EXPECT_EQ(event_remove_event_handler(subscription.handle), 0);
}

TEST_F(AppEventTest, RefusesNamesThatCouldMeanSomethingElse) {
  event_handler_h handle = nullptr;
  for (const std::string& name : {std::string(), std::string("a',arg1='b"), std::string(256, 'a')}) {
    EXPECT_LT(event_add_event_handler(name.c_str(), OnEvent, nullptr, &handle), 0);
    EXPECT_LT(event_publish_app_event(name.c_str(), nullptr), 0);
  }
  EXPECT_EQ(handle, nullptr);
}

}  // namespace
