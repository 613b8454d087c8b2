// Who may do what, and who asks: policy, labels, sessions and application ids.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>

#include "nurvo/app_manager.h"
#include "nurvo/smack.h"
#include "nurvo/vestra.h"
#include "nurvo_desktop/owned.h"
#include "testing/process.h"

extern "C" void vestra_finish(vestra* client);

namespace {

constexpr const char* kPrivilege = "http://developer.nurvo.example/privilege/microphone";

using Text = nurvo::MallocPtr<char>;

class AccessTest : public ::testing::Test {
 protected:
  AccessTest() : path_(::testing::TempDir() + "nurvo-policy-" + std::to_string(getpid())) {
    setenv("NURVO_POLICY", path_.c_str(), 1);
    vestra_configuration* configuration = nullptr;
    EXPECT_EQ(vestra_configuration_create(&configuration), 0);
    EXPECT_EQ(vestra_configuration_set_cache_size(configuration, 100), 0);
    EXPECT_EQ(vestra_initialize(&client_, configuration), 0);
    vestra_configuration_destroy(configuration);
  }
  ~AccessTest() override {
    vestra_finish(client_);
    unlink(path_.c_str());
  }

  int Check(const char* label = "User::App::com.example.page") {
    return vestra_check(client_, label, "1", "1000", kPrivilege);
  }
  void WritePolicy(const std::string& text) { std::ofstream(path_) << text; }

  std::string path_;
  vestra* client_ = nullptr;
};

TEST_F(AccessTest, AllowsExactlyWhatTheFileGrantsNow) {
  const std::string grant = std::string("com.example.page ") + kPrivilege;
  const std::pair<std::string, bool> rows[] = {
      {grant, true},
      {"# comment\n\n\t com.example.page\t" + std::string(kPrivilege) + " # why\r\n", true},
      {"com.example.other x\n" + grant + "\n", true},
      {"", false},
      {"# " + grant, false},
      {grant + "s", false},
      {"x" + grant, false},
      {grant + " more", false},
      {"com.example.page", false},
      {std::string(kPrivilege) + " com.example.page", false},
  };
  EXPECT_EQ(Check(), 1) << "no file yet";
  for (const auto& [policy, allowed] : rows) {
    WritePolicy(policy);
    EXPECT_EQ(Check(), allowed ? VESTRA_API_ACCESS_ALLOWED : 1) << policy;
  }
  WritePolicy(grant + "\n User::App:: " + kPrivilege);
  for (const char* label : {"", "User::App::", "com.example.page", "User::App::com.example.pag"}) {
    EXPECT_EQ(Check(label), 1) << label;
  }
  EXPECT_LT(Check(nullptr), 0);
  unsetenv("NURVO_POLICY");
  EXPECT_EQ(Check(), 1);
}

TEST_F(AccessTest, AnApplicationIsItsEnvironment) {
  char* raw = nullptr;
  setenv("NURVO_APP_ID", "com.example.own", 1);
  ASSERT_EQ(app_manager_get_app_id(getpid(), &raw), 0);
  EXPECT_STREQ(Text(raw).get(), "com.example.own");
  EXPECT_EQ(smack_new_label_from_self(&raw), 26);
  EXPECT_STREQ(Text(raw).get(), "User::App::com.example.own");

  Process other({"sh", "-c", "echo up; kill -STOP $$"}, {{"NURVO_APP_ID", "com.example.other"}});
  ASSERT_EQ(other.ReadLine(), "up");
  ASSERT_EQ(app_manager_get_app_id(other.pid(), &raw), 0);
  EXPECT_STREQ(Text(raw).get(), "com.example.other");
  EXPECT_STREQ(Text(vestra_session_from_pid(other.pid())).get(), std::to_string(getsid(0)).c_str());

  raw = nullptr;
  unsetenv("NURVO_APP_ID");
  EXPECT_LT(app_manager_get_app_id(getpid(), &raw), 0);
  EXPECT_LT(app_manager_get_app_id(1 << 30, &raw), 0);
  EXPECT_LT(smack_new_label_from_self(&raw), 0);
  EXPECT_EQ(raw, nullptr);
  EXPECT_EQ(vestra_session_from_pid(1 << 30), nullptr);
}

}  // namespace
