// Which command's callback threw, from the lines of the script API's console.
#include "app/callback_log.h"

#include <gtest/gtest.h>

namespace corvis::kit {
namespace {

constexpr const char* kPlay =
    R"(_callback {"action":"ACTION_PLAY","listenerId":"ACTION_PLAY","param":""} ACTION_PLAY )";
constexpr const char* kPause =
    R"(_callback {"action":"ACTION_PAUSE","listenerId":"ACTION_PAUSE"} ACTION_PAUSE)";
constexpr const char* kThrown = "_callback exception : Error: no";

TEST(CallbackLog, NamesTheExceptionOfTheLastCallOnly) {
  struct Row {
    const char* name;
    std::vector<std::string> lines;
    const char* exception_of_play;
  };
  const Row rows[] = {
      {"nothing was called", {}, ""},
      {"it threw nothing", {kPlay}, ""},
      {"it threw", {kPlay, "Type of Response [boolean]", kThrown}, "Error: no"},
      {"an earlier call threw", {kPlay, kThrown, kPlay}, ""},
      {"another action's callback threw", {kPlay, kPause, kThrown}, ""},
      {"a page's text that looks like one", {kPlay, "x _callback exception : y"}, ""},
  };
  for (const Row& row : rows) {
    CallbackLog log;
    for (const std::string& line : row.lines) log.TakeLine(line);
    EXPECT_EQ(log.ExceptionOf("ACTION_PLAY"), row.exception_of_play) << row.name;
  }
}

}  // namespace
}  // namespace corvis::kit
