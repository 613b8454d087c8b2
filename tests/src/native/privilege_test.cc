// The privilege check: who is asked, in which order, what is kept, and what the page gets.
#include <unistd.h>

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
  const std::string check = "vestra_check User::App::cinema session-1 " + std::to_string(getuid());
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
      {{"/privilege/voicecontrol"}, ErrorReply("SecurityError", "Microphone PrivilegeException"), 1},
      {{"/privilege/microphone"}, ErrorReply("SecurityError", "Voice Control PrivilegeException"), 2},
  };
  const std::string host = "http://" CORVIS_PRIVILEGE_HOST;
  const std::string kUris = host + "/privilege/microphone, " + host + "/privilege/voicecontrol";
  for (const auto& [granted, reply, questions] : kRows) {
    platform().granted_paths = granted;
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
  // Anything but "allowed" is a refusal.
  platform().Fail(check);
  EXPECT_EQ(Check(), ErrorReply("SecurityError", "Microphone PrivilegeException"));
  EXPECT_EQ(platform().LogWith("CheckAccess failed [-7]").size(), 1U);
  EXPECT_EQ(Check(), kSuccess);
}

TEST_F(PrivilegeTest, MissingTextsAreEmptyAndFetchedAgain) {
  platform().Fail("smack_new_label_from_self", 1, true);
  platform().Fail("vestra_session_from_pid", 1, true);
  platform().Fail("vestra_configuration_create");
  Check();
  EXPECT_EQ(platform().counts["vestra_check   " + std::to_string(getuid())], 2);
  EXPECT_EQ(platform().counts["smack_new_label_from_self"], 2);
  EXPECT_EQ(platform().counts["vestra_session_from_pid"], 2);
  EXPECT_EQ(platform().LogWith("vestra_configuration_set_cache_size [-1] failed!").size(), 1U);
}

}  // namespace
