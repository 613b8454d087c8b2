// What the channel sends and how it cuts, and what it does when the platform refuses.
#include "common/picojson.h"

#include "library_fixture.h"
#include "nurvo/extension.h"
#include "voice-interaction/voice_interaction_channel.h"

namespace {

using extension::voice_interaction::VoiceInteractionChannel;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;

class ChannelTest : public LibraryTest {
 protected:
  ChannelTest() {
    page = runtime->NewListeningPage("");
    platform().TakeSent();
    platform().log.clear();
  }

  // The "partial_result" pieces that the data leaves in; joined they must be the data.
  std::vector<size_t> PieceSizes(const std::string& data) {
    // Longer than any piece's word, so that the whole is refused whenever its pieces would fit.
    VoiceInteractionChannel::Send(std::string(99, 'c'), data);
    std::vector<size_t> sizes;
    std::string joined;
    for (const fake::Entries& piece : platform().sent) {
      EXPECT_EQ(piece[0].second, "partial_result");
      EXPECT_EQ(piece[2].second, std::to_string(data.size()));
      sizes.push_back(piece[1].second.size());
      joined += piece[1].second;
    }
    EXPECT_EQ(joined, data);
    platform().sent.clear();
    return sizes;
  }

  InstanceHandle page = 0;
};

TEST_F(ChannelTest, AMessageCarriesItsEntriesInOrder) {
  VoiceInteractionChannel::Send("result", "success");
  const fake::Entries expected = {{"command", "result"}, {"strData", "success"}, {"sdkVersion", "1.0.8"}};
  EXPECT_THAT(platform().sent, ElementsAre(expected));
}

TEST_F(ChannelTest, TwelveKibibytesGoWholeAndOneByteMoreIsCut) {
  const std::string data(12000, 'x');
  const size_t overhead =
      fake::Encode({{"command", "result"}, {"strData", data}, {"sdkVersion", "1.0.8"}}).size() - data.size();
  for (const size_t pieces : {1U, 2U}) {
    VoiceInteractionChannel::Send("result", std::string(12287 + pieces - overhead, 'x'));
    EXPECT_EQ(platform().TakeSent().size(), pieces);
    EXPECT_EQ(platform().LogWith("Size exceed its maximum").size(), pieces - 1);
  }
}

TEST_F(ChannelTest, CutsAtMultiplesOfTwelveDepthFirst) {
  // The port takes this many bytes of data beside the rest of a message.
  const auto set_limit = [](int data) {
    const fake::Entries rest = {{"command", "partial_result"},
                                {"strData", "10"},
                                {"totalDataLength", "100"},
                                {"sdkVersion", "1.0.8"}};
    platform().port_limit = static_cast<int>(fake::Encode(rest).size()) - 2 + data;
  };
  set_limit(60);
  EXPECT_THAT(PieceSizes(std::string(100, 'a')), ElementsAre(48, 52));
  set_limit(30);
  EXPECT_THAT(PieceSizes(std::string(60, 'a') + std::string(40, 'b')), ElementsAre(24, 24, 24, 28));
  set_limit(16);
  EXPECT_THAT(PieceSizes(std::string(25, 'a')), ElementsAre(12, 13));
  EXPECT_THAT(PieceSizes("a€€€€€€€€€"), ElementsAre(12, 16));
}

TEST_F(ChannelTest, DataThatCanNotBeCutEndsWithOneErrorLine) {
  for (const size_t size : {0U, 1U, 23U}) {
    platform().port_limit = 5;
    platform().log.clear();
    VoiceInteractionChannel::Send("result", std::string(size, 'x'));
    EXPECT_THAT(platform().TakeSent(), ElementsAre());
    EXPECT_EQ(platform().LogWith("MESSAGE_PORT_ERROR_MAX_EXCEEDED from message port").size(), 1U) << size;
    EXPECT_EQ(platform().LogWith("can't be cut").size(), 1U) << size;
  }
}

TEST_F(ChannelTest, AFailedRegistrationStillSendsAndIsTriedAgain) {
  runtime->DestroyPage(page);
  platform().TakeSent();
  platform().Fail("message_port_register_local_port");
  runtime->NewListeningPage("");
  EXPECT_THAT(platform().TakeSent(), ElementsAre("register|com.example.cinema"));
  VoiceInteractionChannel::Reset();
  EXPECT_THAT(platform().TakeSent(), ElementsAre("register|com.example.cinema"));
  EXPECT_TRUE(platform().Deliver("ACTION_PLAY", ""));
}

TEST_F(ChannelTest, AFailedUnregistrationForgetsThePortAllTheSame) {
  platform().Fail("message_port_unregister_local_port");
  VoiceInteractionChannel::Clear();
  EXPECT_EQ(platform().LogWith("Failed to unregister local port listener during instance destructor.").size(),
            1U);
  platform().log.clear();
  VoiceInteractionChannel::Clear();
  EXPECT_EQ(platform().log.size(), 2U);
  EXPECT_THAT(platform().TakeSent(), ElementsAre("unregister|com.example.cinema"));
}

// A service that sends a command as soon as the port is open, or while a page ends.
TEST_F(ChannelTest, ACommandWithinACallGoesToThePageThatRegistersAndToNoneThatUnsubscribes) {
  runtime->DestroyPage(page);
  const auto deliver_within = [](const std::string& call) {
    platform().on_call = [call] {
      if (platform().calls.back() != call) return;
      EXPECT_TRUE(platform().Deliver("ACTION_PLAY", "1"));
    };
  };
  deliver_within("message_port_register_local_port");
  page = runtime->NewListeningPage(R"("ACTION_PLAY")");
  EXPECT_EQ(runtime->TakePosted(page).size(), 1U);
  EXPECT_THAT(platform().LogWith("Invalid instance data"), ElementsAre());

  runtime->Call(page, kSetCallback, R"({"actions":[]})");
  platform().TakeSent();
  deliver_within("event_remove_event_handler");
  runtime->DestroyPage(page);
  EXPECT_EQ(platform().LogWith("Invalid instance data").size(), 1U);
  EXPECT_THAT(platform().TakeSent(), ElementsAre("unregister|com.example.cinema"));
}

// The platform is written in C: nothing that is thrown may pass through it.
TEST_F(ChannelTest, WhatIsThrownWithinACallbackIsLogged) {
  const std::pair<void (*)(), const char*> kRows[] = {
      {[] { throw common::PlatformException("UnknownError", "closed"); }, ": closed"},
      {[] { throw std::runtime_error("broken"); }, ": broken"},
      {[] { throw 7; }, ": unknown exception"}};
  for (const auto& [fail, line] : kRows) {
    runtime->Call(page, kSetCallback, R"({"actions":["ACTION_PLAY"]})");
    runtime->on_post = [fail = fail](InstanceHandle) { fail(); };
    EXPECT_TRUE(platform().Deliver("ACTION_PLAY", "1"));
    platform().on_call = fail;
    EXPECT_EQ(platform().PublishStart(), 1);
    EXPECT_EQ(runtime->Call(page, kCheckPrivileges),
              ErrorReply("SecurityError", "Microphone PrivilegeException"));
    EXPECT_EQ(runtime->Call(page, kListen), ErrorReply("UnknownError", line + 2));
    platform().on_call = nullptr;
    for (const char* function :
         {" OnMessageReceived(", " OnReceivedInitEvent(", " CheckPrivilege(", " ReportFailure("}) {
      EXPECT_THAT(platform().LogWith(function), Contains(EndsWith(line)));
    }
    platform().log.clear();
  }
}

}  // namespace
