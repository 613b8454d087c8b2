// The wording of common lines, and what a failed assertion leaves in the log.
#include "common/picojson.h"

#include <csignal>
#include <cstdio>
#include <exception>

#include "library_fixture.h"

namespace {

using testing::MatchesRegex;

void ReturnEarly(bool early) {
  CORVIS_LOG_SCOPE();
  if (early) return;
  CORVIS_LOG_REPORTING_ERROR();
}

TEST(Logger, BracketsAScopeHoweverItEnds) {
  fake::Platform::Reset();
  ReturnEarly(true);
  ReturnEarly(false);
  const char* const kEntry = R"(logger: ScopeLogger > logger_test: ReturnEarly\([0-9]+\) > Enter )";
  const char* const kExit = R"(logger: ~ScopeLogger\([0-9]+\) > logger_test: ReturnEarly > Exit)";
  const struct {
    int priority;
    const char* text;
  } kExpected[] = {{3, kEntry},
                   {3, kExit},
                   {3, kEntry},
                   {6, R"(logger_test: ReturnEarly\([0-9]+\) > Reporting error\.)"},
                   {3, kExit}};
  const auto& log = fake::Platform::Get().log;
  ASSERT_EQ(log.size(), std::size(kExpected));
  for (size_t i = 0; i < log.size(); ++i) {
    EXPECT_EQ(log[i].priority, kExpected[i].priority) << i;
    EXPECT_EQ(log[i].tag, "CORVI_PLUGINS") << i;
    EXPECT_THAT(log[i].text, MatchesRegex(kExpected[i].text)) << i;
  }
}

// The fake platform keeps lines in memory, so the child process shows them before it ends.
void FailAndShow(const char* message) {
  fake::Platform::Reset();
  std::set_terminate(nullptr);
  std::signal(SIGABRT, [](int) {
    for (const auto& line : fake::Platform::Get().log) std::fprintf(stderr, "[%s]\n", line.text.c_str());
  });
  if (*message == '\0') CORVIS_ASSERT(1 > 2, "");
  CORVIS_ASSERT(1 > 2, "one is less");
}

TEST(Logger, AnAssertionWritesItsLineAndEndsTheProcess) {
  EXPECT_DEATH(FailAndShow(""),
               R"(!!\(1 > 2\) && \"\"[^[]*\[logger_test: FailAndShow\([0-9]+\) > assert\(1 > 2\)\])");
  EXPECT_DEATH(
      FailAndShow("x"),
      R"(!!\(1 > 2\) && \"one is less\"[^[]*\[logger_test: .*assert\(1 > 2\), message: one is less\])");
}

TEST(Logger, PicojsonAssertsThroughTheCommonLine) {
  EXPECT_DEATH(picojson::value(1.0).get<std::string>(), R"(!!\(.*is<std::string>\(\)\) && \"\")");
}

}  // namespace
