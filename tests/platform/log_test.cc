// The platform log: what a line looks like, and which lines are written.
#include "nurvo/log.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "testing/process.h"

namespace {

// The priorities' letters of the lines that a program writes under a threshold. (The warning about an unknown
// threshold has a 't' in their place.)
std::string LogOf(const char* threshold) {
  Process peer({PEER_PROGRAM, "log"}, {{"NURVO_LOG", threshold}});
  std::string log;
  for (std::string line = peer.ReadLine(); !line.empty(); line = peer.ReadLine()) log += line.substr(13, 1);
  return log;
}

TEST(LogTest, TheThresholdDecidesWhatIsWritten) {
  const std::pair<const char*, const char*> rows[] = {
      {"V", "VDIWEF"}, {"D", "DIWEF"}, {"I", "IWEF"}, {"W", "WEF"}, {"E", "EF"}, {"F", "F"},
      {"S", ""},       {"", ""},       {"X", "t"},    {"VV", "t"},  {"e", "t"}};
  for (const auto& [threshold, letters] : rows) EXPECT_EQ(LogOf(threshold), letters) << threshold;
}

TEST(LogTest, ALineIsWholeAndOnOneLine) {
  const std::string data(100000, 'x');
  ::testing::internal::CaptureStderr();
  const int written = log_print_to(3, NURVO_LOG_ERROR, "TAG", "%d %s\nend", 7, data.c_str());
  const std::string line = ::testing::internal::GetCapturedStderr();
  EXPECT_EQ(written, static_cast<int>(line.size()));
  int digits = 0;
  int end = 0;
  std::sscanf(line.c_str(), "%*2d:%*2d:%*2d.%3d E TAG: %n", &digits, &end);
  EXPECT_EQ(end, 20) << line.substr(0, 40);
  EXPECT_TRUE(line.substr(20) == "7 " + data + "\\nend\n");
  ::testing::internal::CaptureStderr();
  log_print(NURVO_LOG_ERROR, "TAG", "%s", "\n\na\n\\n\n");
  EXPECT_EQ(::testing::internal::GetCapturedStderr().substr(20), "\\n\\na\\n\\n\\n\n");
}

}  // namespace

// The suites of this program look at what is logged as an error.
class ErrorsAreLogged : public ::testing::Environment {
  void SetUp() override { setenv("NURVO_LOG", "E", 1); }
};
static const auto* const kErrorsAreLogged = ::testing::AddGlobalTestEnvironment(new ErrorsAreLogged);
