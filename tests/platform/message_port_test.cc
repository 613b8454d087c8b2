// Message ports between two processes on a private bus.
#include <glib.h>
#include <systemd/sd-bus.h>

#include <csignal>

#include "bus/payload.h"
#include "bus_fixture.h"
#include "nurvo_desktop/app_watch.h"
#include "nurvo_desktop/bus.h"
#include "nurvo_desktop/sd_bus_ptr.h"

namespace {

using MessagePortTest = BusTest;

TEST_F(MessagePortTest, ManyWaitingMessagesLeaveTimeForLessUrgentWork) {
  constexpr size_t kCount = 1000;
  Open(kPort);
  for (size_t i = 0; i < kCount; ++i) ASSERT_EQ(Send({}, kOwnId), 0);
  bool is_drawn = false;
  const auto draw = [](gpointer flag) -> gboolean {
    *static_cast<bool*>(flag) = true;
    return G_SOURCE_REMOVE;
  };
  g_idle_add_full(G_PRIORITY_HIGH_IDLE, draw, &is_drawn, nullptr);
  on_message_ = [&] { EXPECT_TRUE(is_drawn || received_.size() < kCount); };
  EXPECT_TRUE(WaitFor([&] { return received_.size() == kCount; }));
}

// A page answers in a later turn of the loop. When the message after a command announced a new service, the
// page had registered with that before it answered the old one, and the answer was taken for that to the new
// one's first command.
TEST_F(MessagePortTest, WhatAMessageBringsAboutIsDoneBeforeTheNext) {
  Open(kPort);
  size_t done = 0;
  size_t undone_at_most = 0;
  on_message_ = [&] {
    undone_at_most = std::max(undone_at_most, received_.size() - done);
    const auto finish = [](gpointer count) -> gboolean {
      return ++*static_cast<size_t*>(count), G_SOURCE_REMOVE;
    };
    g_idle_add_full(G_PRIORITY_HIGH, finish, &done, nullptr);
  };
  constexpr size_t kMany = 100;
  for (size_t i = 0; i < kMany; ++i) Send({}, kOwnId);
  ASSERT_TRUE(WaitFor([&] { return done == kMany; }));
  EXPECT_EQ(undone_at_most, 1U);
}

TEST_F(MessagePortTest, RefusesWhatCannotBeSent) {
  const auto peer = StartPeer();
  const BundlePtr empty = MakeBundle({});
  const BundlePtr fits = MakeBundle({{"data", std::string(65500, 'x')}});
  const size_t room = nurvo::kMaxPayloadBytes - Encode(fits).size();
  const BundlePtr largest = MakeBundle({{"data", std::string(65500 + room, 'x')}});
  const BundlePtr too_large = MakeBundle({{"data", std::string(65501 + room, 'x')}});
  const std::tuple<const char*, const char*, bundle*, int> rows[] = {
      {kPeerId, kPort, largest.get(), MESSAGE_PORT_ERROR_NONE},
      {kPeerId, kPort, too_large.get(), MESSAGE_PORT_ERROR_MAX_EXCEEDED},
      {"com.example.nobody", kPort, empty.get(), MESSAGE_PORT_ERROR_PORT_NOT_FOUND},
      {"nodots", kPort, empty.get(), MESSAGE_PORT_ERROR_INVALID_PARAMETER},
      {":1.1", kPort, empty.get(), MESSAGE_PORT_ERROR_INVALID_PARAMETER},
      {nullptr, kPort, empty.get(), MESSAGE_PORT_ERROR_INVALID_PARAMETER},
      {kPeerId, "", empty.get(), MESSAGE_PORT_ERROR_INVALID_PARAMETER},
      {kPeerId, kPort, nullptr, MESSAGE_PORT_ERROR_INVALID_PARAMETER},
  };
  EXPECT_EQ(Encode(largest).size(), nurvo::kMaxPayloadBytes);
  for (const auto& [app_id, port, message, result] : rows) {
    EXPECT_EQ(message_port_send_message(app_id, port, message), result) << (app_id ? app_id : "null");
  }
}

TEST_F(MessagePortTest, NoticesThatThePeerVanishesAndReturns) {
  std::vector<bool> seen;
  app_watch_h watch = nullptr;
  const auto on_change = [](const char* /*app_id*/, bool is_running, void* list) {
    static_cast<std::vector<bool>*>(list)->push_back(is_running);
  };
  ASSERT_EQ(app_watch_add(kPeerId, on_change, &seen, &watch), 0);
  auto peer = StartPeer();
  Open(kPort);
  EXPECT_EQ(Send({}), 0);
  peer->Signal(SIGKILL);
  EXPECT_TRUE(WaitFor([&] { return Send({}) == MESSAGE_PORT_ERROR_PORT_NOT_FOUND; }));
  peer = StartPeer();
  EXPECT_TRUE(app_watch_is_running(kPeerId));
  EXPECT_EQ(Send({{"do", "echo"}}), 0);
  EXPECT_TRUE(WaitFor([&] { return received_.size() == 1; }));
  EXPECT_EQ(seen, (std::vector<bool>{true, false, true}));
  EXPECT_EQ(app_watch_remove(watch), 0);
  EXPECT_LT(app_watch_remove(watch), 0);
}

// 16 MiB go to a peer that is stopped, and all of it comes back, in order and whole, when the peer continues.
TEST_F(MessagePortTest, DoesNotWaitForAPeerThatDoesNotRead) {
  constexpr int kPieces = 16 * 1024 * 1024 / 8192;
  const auto peer = StartPeer();
  const int port = Open(kPort);
  const std::string data = std::string(8191, 'x') + '\xC3';
  peer->Signal(SIGSTOP);
  for (int i = 0; i < kPieces; ++i) {
    ASSERT_EQ(Send({{"do", "echo"}, {"id", std::to_string(i)}, {"data", data}}), 0) << i;
  }
  peer->Signal(SIGCONT);
  ASSERT_TRUE(WaitFor([&] { return received_.size() == kPieces; })) << received_.size();
  for (int i = 0; i < kPieces; ++i) ASSERT_EQ(received_[i].id, std::to_string(i));
  const Message& last = received_.back();
  EXPECT_EQ(std::tie(last.port, last.app_id, last.has_port, last.data),
            std::make_tuple(port, kPeerId, false, data));
}

// When the bus itself is stopped, a send fails instead of waiting or piling up messages, and what was
// accepted arrives when the bus continues.
TEST_F(MessagePortTest, GivesUpOnABusThatTakesNothing) {
  Open(kPort);
  const std::string data(8192, 'x');
  ASSERT_EQ(Send({{"id", "0"}, {"data", data}}, kOwnId), 0);
  size_t accepted = 1;
  Bus().Signal(SIGSTOP);
  const auto send = [&] { return Send({{"id", std::to_string(accepted)}, {"data", data}}, kOwnId); };
  int result = send();
  while (result == 0 && ++accepted < 10000) result = send();
  EXPECT_EQ(result, MESSAGE_PORT_ERROR_IO_ERROR);
  EXPECT_EQ(send(), MESSAGE_PORT_ERROR_IO_ERROR);
  Bus().Signal(SIGCONT);
  EXPECT_TRUE(WaitFor([&] { return send() == 0; }));
  ASSERT_TRUE(WaitFor([&] { return received_.size() > accepted; })) << received_.size();
  for (size_t i = 0; i <= accepted; ++i) ASSERT_EQ(received_[i].id, std::to_string(i));
}

// A delivery by hand: what another implementation, or an attacker, could send.
void DeliverByHand(sd_bus* bus, const char* path, const char* member, const char* signature,
                   const std::string& bytes) {
  sd_bus_message* message = nullptr;
  ASSERT_GE(sd_bus_message_new_method_call(bus, &message, kOwnId, path, "nurvo.MessagePort", member), 0);
  const nurvo::MessagePtr owner(message);
  for (const char* type = signature; *type == 's'; ++type)
    sd_bus_message_append(message, "s", "com.example.x");
  if (std::string(signature).find("ay") != std::string::npos) {
    sd_bus_message_append_array(message, 'y', bytes.data(), bytes.size());
  }
  sd_bus_message_set_expect_reply(message, 0);
  EXPECT_GE(sd_bus_send(bus, message, nullptr), 0);
}

TEST_F(MessagePortTest, DropsMalformedDeliveriesWithALogLineEach) {
  Open("plain");
  constexpr const char* kPath = "/nurvo/port/plain";
  const std::string good = Encode(MakeBundle({{"id", "good"}}));
  sd_bus* bus = nullptr;
  ASSERT_GE(sd_bus_open_user(&bus), 0);
  const nurvo::BusPtr owner(bus);

  ::testing::internal::CaptureStderr();
  const std::tuple<const char*, const char*, const char*> calls[] = {
      {kPath, "Deliver", "s"},
      {kPath, "Deliver", "say"},
      {kPath, "Deliver", "sssay"},
      {kPath, "Hand", "ssay"},
      {"/nurvo/port/closed", "Deliver", "ssay"},
      {"/nurvo/port", "Deliver", "ssay"},
      {"/nurvo/port/plain/deeper", "Deliver", "ssay"}};
  for (const auto& [path, member, signature] : calls) DeliverByHand(bus, path, member, signature, good);
  for (const std::string& bad : {std::string(), std::string("\0\xFF junk", 7), good + '\0',
                                 std::string(nurvo::kMaxPayloadBytes + 1, 'x')})
    DeliverByHand(bus, kPath, "Deliver", "ssay", bad);
  DeliverByHand(bus, kPath, "Deliver", "ssay", good);
  EXPECT_GE(sd_bus_flush(bus), 0);
  EXPECT_TRUE(WaitFor([&] { return !received_.empty(); }));
  const std::string log = ::testing::internal::GetCapturedStderr();

  ASSERT_EQ(received_.size(), 1U);
  EXPECT_EQ(received_[0].id, "good");
  EXPECT_TRUE(received_[0].has_port);
  EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 11) << log;
}

TEST_F(MessagePortTest, PortsMayBeClosedAndOpenedWhileTheyAreCalled) {
  const int first = Open("first");
  const int second = Open("second");
  EXPECT_GT(first, 0);
  EXPECT_NE(first, second);
  EXPECT_EQ(Open("first"), first);
  const auto send = [](const char* port, const char* id) {
    EXPECT_EQ(message_port_send_message(kOwnId, port, MakeBundle({{"id", id}}).get()), 0);
  };
  int reopened = 0;
  on_message_ = [&] {
    if (received_.back().id != "close") return;
    EXPECT_EQ(message_port_unregister_local_port(first), 0);
    EXPECT_EQ(message_port_unregister_local_port(second), 0);
    EXPECT_LT(message_port_unregister_local_port(second), 0);
    reopened = Open("second");
    send("second", "after");
  };
  send("second", "close");
  send("first", "lost");
  ASSERT_TRUE(WaitFor([&] { return received_.size() == 2; }));
  EXPECT_EQ(received_[0].port, second);
  EXPECT_EQ(received_[1].id, "after");
  EXPECT_EQ(received_[1].port, reopened);
}

TEST_F(MessagePortTest, AnApplicationIdBelongsToOneProcess) {
  const auto result_of_another = [] {
    return Process({PEER_PROGRAM, "serve", kPort}, {{"NURVO_LOG", ""}}).ReadLine();
  };
  const int port = Open(kPort);
  EXPECT_EQ(result_of_another(), "opened " + std::to_string(NURVO_DESKTOP_ERROR_APP_ID_TAKEN));
  EXPECT_EQ(message_port_unregister_local_port(port), 0);
  EXPECT_EQ(result_of_another(), "opened 1");
  EXPECT_EQ(Process({PEER_PROGRAM, "serve", kPort}, {{"NURVO_APP_ID", ""}, {"NURVO_LOG", ""}}).ReadLine(),
            "opened -5");
}

TEST_F(MessagePortTest, ALostBusIsAnErrorAndNothingWorse) {
  PrivateBus bus;
  Process peer({PEER_PROGRAM, "lose", kPort},
               {{"DBUS_SESSION_BUS_ADDRESS", bus.address()}, {"NURVO_LOG", ""}});
  ASSERT_EQ(peer.ReadLine(), "opened 1");
  bus.Kill();
  EXPECT_EQ(peer.ReadLine(), "calm -5 -5 1");
}

}  // namespace
