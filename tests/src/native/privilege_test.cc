// The privilege check: who is asked, in which order, what is kept, and what the page gets.
#include <climits>

#include "library_fixture.h"

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;

class PrivilegeTest : public LibraryTest {
 protected:
  PrivilegeTest() : page(runtime->NewPage()) {}
  std::string Check() { return runtime->Call(page, kCheckPrivileges); }
  const InstanceHandle page;
  const std::string check = "vestra_check User::App::cinema session-1 4000000001";
};

TEST_F(PrivilegeTest, IdentityAndClientAreFetchedOnce) {
  EXPECT_EQ(Check(), kSuccess);
  EXPECT_THAT(platform().TakeCalls(),
              ElementsAre("smack_new_label_from_self", "vestra_session_from_pid",
                          "vestra_configuration_create", "vestra_configuration_set_cache_size 100",
                          "vestra_initialize", "vestra_configuration_destroy", check, check));
  EXPECT_EQ(Check(), kSuccess);
  EXPECT_THAT(platform().TakeCalls(), ElementsAre(check, check));
  EXPECT_THAT(platform().LogWith("vestra_initialize"), ElementsAre(EndsWith(" passed with ret = [0] ")));
  runtime->DestroyPage(page);
  EXPECT_THAT(platform().TakeCalls(), ElementsAre("vestra_finish"));
}

TEST_F(PrivilegeTest, TheMicrophoneIsAskedForFirst) {
  const std::tuple<std::set<std::string>, std::string, int> kRows[] = {
      {{}, ErrorReply("SecurityError", "Microphone PrivilegeException"), 1},
      {{fake::kVoiceControlUri}, ErrorReply("SecurityError", "Microphone PrivilegeException"), 1},
      {{fake::kMicrophoneUri}, ErrorReply("SecurityError", "Voice Control PrivilegeException"), 2},
  };
  const std::string kUris = std::string(fake::kMicrophoneUri) + ", " + fake::kVoiceControlUri;
  for (const auto& [granted, reply, questions] : kRows) {
    platform().granted = granted;
    platform().log.clear();
    const int before = platform().counts[check];
    EXPECT_EQ(Check(), reply);
    EXPECT_EQ(platform().counts[check] - before, questions);
    EXPECT_EQ(platform().LogWith("CheckPrivileges(").size(), 2U);
    EXPECT_EQ(platform().LogWith(kUris).size(), 1U);
    EXPECT_EQ(platform().LogWith("> Reporting error.").size(), 1U);
    EXPECT_THAT(platform().log.back().text, HasSubstr("Reporting error."));
  }
  EXPECT_EQ(platform().LogWith("CheckAccess failed [1]").size(), 1U);
}

TEST_F(PrivilegeTest, AClientThatCanNotBeOpenedIsARefusalAndTriedAgain) {
  platform().Fail("vestra_initialize");
  EXPECT_EQ(Check(), ErrorReply("SecurityError", "Microphone PrivilegeException"));
  EXPECT_EQ(platform().counts[check], 0);
  EXPECT_EQ(platform().counts["vestra_configuration_destroy"], 1);
  platform().AnswerNull("vestra_initialize");
  EXPECT_EQ(Check(), ErrorReply("SecurityError", "Microphone PrivilegeException"));
  EXPECT_EQ(platform().counts[check], 0);
  EXPECT_EQ(Check(), kSuccess);
}

TEST_F(PrivilegeTest, EveryAnswerButTwoIsARefusal) {
  for (const int answer : {INT_MIN, -7, -2, 0, 1, 3, INT_MAX}) {
    platform().granted = {};
    platform().refusal = answer;
    EXPECT_EQ(Check(), ErrorReply("SecurityError", "Microphone PrivilegeException"));
    EXPECT_EQ(platform().LogWith("CheckAccess failed [" + std::to_string(answer) + "]").size(), 1U);
  }
  EXPECT_THAT(platform().LogWith("vestra_check passed"), ElementsAre());
}

TEST_F(PrivilegeTest, MissingTextsAreEmptyAndFetchedAgain) {
  platform().Fail("smack_new_label_from_self", 1, true);
  platform().Fail("vestra_session_from_pid", 1, true);
  platform().Fail("vestra_configuration_create");
  Check();
  EXPECT_EQ(platform().counts["vestra_check   4000000001"], 2);
  EXPECT_EQ(platform().counts["smack_new_label_from_self"], 2);
  EXPECT_EQ(platform().counts["vestra_session_from_pid"], 2);
  EXPECT_EQ(platform().LogWith("vestra_configuration_set_cache_size [-1] failed!").size(), 1U);
}

}  // namespace
