// The bus in memory: what is delivered to whom and when, and what is not.
#include "platform/bus.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "nurvo_desktop/event_publish.h"
#include "testing/bundles.h"

namespace {

using corvis::simulator::Acting;
using corvis::simulator::Bus;
using testing::ElementsAre;
using Texts = std::vector<std::string>;

// Notes what arrives, in order.
struct Receiver {
  Texts received;
  // Closed from within the next message; 0 for none.
  int to_close = 0;
};

void OnMessage(int /*port*/, const char* app_id, const char* /*remote_port*/, bool /*is_trusted*/,
               bundle* message, void* receiver) {
  auto& self = *static_cast<Receiver*>(receiver);
  self.received.push_back(std::string(app_id) + " to " + Bus::Get().acting() + ": " +
                          TextOf(message, "text"));
  if (self.to_close != 0) message_port_unregister_local_port(std::exchange(self.to_close, 0));
}

void OnEvent(const char* name, bundle* /*data*/, void* receiver) {
  static_cast<Receiver*>(receiver)->received.emplace_back(name);
}

void OnChange(const char* app_id, bool is_running, void* receiver) {
  static_cast<Receiver*>(receiver)->received.push_back(std::string(app_id) +
                                                       (is_running ? " came" : " went"));
}

int Open(const char* app_id, Receiver& receiver, const char* port = "port") {
  const Acting app(app_id);
  return message_port_register_local_port(port, OnMessage, &receiver);
}

int Send(const char* from, const char* to, const std::string& text, const char* port = "port") {
  const Acting app(from);
  return message_port_send_message(to, port, MakeBundle({{"text", text}}).get());
}

void DeliverAll() {
  while (Bus::Get().DeliverNext()) {
  }
}

TEST(BusTest, DeliversInOrderAndLater) {
  Receiver a;
  Receiver b;
  const int first = Open("a", a);
  const int second = Open("b", b);
  EXPECT_EQ(Send("a", "b", "1"), 0);
  EXPECT_EQ(Send("b", "a", "2"), 0);
  EXPECT_EQ(Send("a", "b", "3"), 0);
  EXPECT_THAT(b.received, ElementsAre());
  DeliverAll();
  EXPECT_THAT(a.received, ElementsAre("b to a: 2"));
  EXPECT_THAT(b.received, ElementsAre("a to b: 1", "a to b: 3"));
  message_port_unregister_local_port(first);
  message_port_unregister_local_port(second);
}

TEST(BusTest, RefusesWhatTheDesktopRefuses) {
  Receiver a;
  EXPECT_EQ(Send("b", "a", "early"), MESSAGE_PORT_ERROR_PORT_NOT_FOUND);
  const int port = Open("a", a);
  EXPECT_EQ(Send("b", "a", std::string(65537, 'x')), MESSAGE_PORT_ERROR_MAX_EXCEEDED);
  EXPECT_EQ(Send("b", "a", "nobody there", "other"), 0);
  EXPECT_EQ(message_port_unregister_local_port(port), 0);
  EXPECT_LT(message_port_unregister_local_port(port), 0);
  EXPECT_EQ(Send("b", "a", "late"), MESSAGE_PORT_ERROR_PORT_NOT_FOUND);
  DeliverAll();
  EXPECT_THAT(a.received, ElementsAre());
}

TEST(BusTest, APortOpenedAgainIsTheSameWithAnotherReceiver) {
  Receiver before;
  Receiver now;
  const int port = Open("a", before);
  EXPECT_EQ(Open("a", now), port);
  Send("b", "a", "1");
  DeliverAll();
  EXPECT_THAT(before.received, ElementsAre());
  EXPECT_THAT(now.received, ElementsAre("b to a: 1"));
  message_port_unregister_local_port(port);
}

TEST(BusTest, WhatWaitsForAClosedPortIsDropped) {
  Receiver a;
  const int port = Open("a", a);
  a.to_close = port;
  Send("b", "a", "1");
  Send("b", "a", "2");
  DeliverAll();
  EXPECT_THAT(a.received, ElementsAre("b to a: 1"));
}

TEST(BusTest, EventsReachThoseWhoAreSubscribedWhenTheyArrive) {
  Receiver stays;
  Receiver leaves;
  event_handler_h first = nullptr;
  event_handler_h second = nullptr;
  event_add_event_handler("start", OnEvent, &stays, &first);
  event_add_event_handler("start", OnEvent, &leaves, &second);
  event_publish_app_event("start", nullptr);
  event_publish_app_event("other", nullptr);
  EXPECT_EQ(event_remove_event_handler(second), 0);
  EXPECT_LT(event_remove_event_handler(second), 0);
  DeliverAll();
  EXPECT_THAT(stays.received, ElementsAre("start"));
  EXPECT_THAT(leaves.received, ElementsAre());
  event_remove_event_handler(first);
}

TEST(BusTest, AnApplicationRunsFromItsFirstPortToItsLast) {
  Receiver a;
  Receiver watcher;
  app_watch_h watch = nullptr;
  app_watch_add("a", OnChange, &watcher, &watch);
  const int first = Open("a", a, "first");
  const int second = Open("a", a, "second");
  message_port_unregister_local_port(first);
  EXPECT_TRUE(app_watch_is_running("a"));
  message_port_unregister_local_port(second);
  EXPECT_FALSE(app_watch_is_running("a"));
  DeliverAll();
  EXPECT_THAT(watcher.received, ElementsAre("a came", "a went"));
  app_watch_remove(watch);
}

}  // namespace
