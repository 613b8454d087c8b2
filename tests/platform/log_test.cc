// The platform log: what a line looks like, and which lines are written.
#include "nurvo/log.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "process.h"

namespace {

int LinesWith(const char* threshold) {
  Process peer({PEER_PROGRAM, "log"}, {{"NURVO_LOG", threshold}});
  int lines = 0;
  while (!peer.ReadLine().empty()) ++lines;
  return lines;
}

TEST(LogTest, TheThresholdDecidesWhatIsWritten) {
  const struct {
    const char* threshold;
    int lines;
  } rows[] = {{"V", 6}, {"D", 5}, {"I", 4}, {"W", 3}, {"E", 2}, {"F", 1}, {"S", 0}, {"", 0}};
  for (const auto& row : rows) EXPECT_EQ(LinesWith(row.threshold), row.lines) << row.threshold;
}

TEST(LogTest, AnUnknownThresholdIsSilentAfterOneWarning) {
  for (const char* threshold : {"X", "VV", "e"}) {
    Process peer({PEER_PROGRAM, "log"}, {{"NURVO_LOG", threshold}});
    EXPECT_NE(peer.ReadLine().find("NURVO_LOG"), std::string::npos) << threshold;
    EXPECT_EQ(peer.ReadLine(), "") << threshold;
  }
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
}

}  // namespace

// The suites of this program look at what is logged as an error.
class ErrorsAreLogged : public ::testing::Environment {
  void SetUp() override { setenv("NURVO_LOG", "E", 1); }
};
static const auto* const kErrorsAreLogged = ::testing::AddGlobalTestEnvironment(new ErrorsAreLogged);
