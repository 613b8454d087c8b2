// What the channel sends and how it cuts, and what it does when the platform refuses.
#include "library_fixture.h"
#include "voice-interaction/voice_interaction_channel.h"

namespace {

using extension::voice_interaction::VoiceInteractionChannel;
using testing::ElementsAre;

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
  EXPECT_THAT(platform().sent, ElementsAre(fake::Entries{
                                   {"command", "result"}, {"strData", "success"}, {"sdkVersion", "1.0.8"}}));
}

TEST_F(ChannelTest, TwelveKibibytesGoWholeAndOneByteMoreIsCut) {
  const size_t overhead =
      fake::Encode({{"command", "result"}, {"strData", std::string(12000, 'x')}, {"sdkVersion", "1.0.8"}})
          .size() -
      12000;
  VoiceInteractionChannel::Send("result", std::string(12288 - overhead, 'x'));
  EXPECT_EQ(platform().TakeSent().size(), 1U);
  EXPECT_EQ(platform().LogWith("Size exceed its maximum").size(), 0U);
  VoiceInteractionChannel::Send("result", std::string(12289 - overhead, 'x'));
  EXPECT_EQ(platform().TakeSent().size(), 2U);
  EXPECT_EQ(platform().LogWith("Size exceed its maximum").size(), 1U);
}

TEST_F(ChannelTest, CutsAtMultiplesOfTwelveDepthFirst) {
  // The port takes this many bytes of data beside the rest of a message.
  const auto set_limit = [](size_t data) {
    platform().port_limit = static_cast<int>(fake::Encode({{"command", "partial_result"},
                                                           {"strData", std::string(data, 'x')},
                                                           {"totalDataLength", "100"},
                                                           {"sdkVersion", "1.0.8"}})
                                                 .size());
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

TEST_F(ChannelTest, WhatThePlatformRefusesIsLoggedAndDropped) {
  const struct {
    const char* call;
    int nth;
    const char* line;
  } kRows[] = {
      {"bundle_create", 1, nullptr},
      {"bundle_add", 1, "Fail to create bundle for message"},
      {"bundle_add", 2, "Fail to create bundle for message"},
      {"bundle_add", 3, "Fail to create bundle for message"},
      {"bundle_encode", 1, "Fail to encode the message"},
      {"message_port_send_message com.kelvaro.tv.vif com.port.vif.voiceinteraction", 1,
       "Fail to send bundle for message"},
  };
  for (const auto& row : kRows) {
    platform().Fail(row.call, row.nth);
    platform().log.clear();
    VoiceInteractionChannel::Send("result", "lost");
    EXPECT_THAT(platform().TakeSent(), ElementsAre()) << row.call;
    EXPECT_EQ(platform().log.size(), row.line == nullptr ? 2U : 3U) << row.call;
    EXPECT_THAT(platform().log.back().text, testing::EndsWith(row.line == nullptr ? "" : row.line))
        << row.call;
    VoiceInteractionChannel::Send("result", "next");
    EXPECT_THAT(platform().TakeSent(), ElementsAre("result|next")) << row.call;
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

}  // namespace
