// The channel before any page listens. A program of its own, since the channel never forgets its callback.
#include "library_fixture.h"
#include "voice-interaction/voice_interaction_channel.h"

namespace {

TEST(UnboundChannelTest, DropsCommands) {
  extension::voice_interaction::VoiceInteractionChannel::OnMessageReceived(1, "", "", false, nullptr,
                                                                           nullptr);
  EXPECT_EQ(fake::Platform::Get().LogWith("No Callback Member").size(), 1U);
}

}  // namespace
