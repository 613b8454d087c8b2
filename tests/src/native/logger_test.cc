// The wording of common lines, and what a failed assertion leaves in the log.
#include "common/picojson.h"

#include <csignal>
#include <cstdio>
#include <exception>

#include "library_fixture.h"

namespace {

static_assert(common::kLogDebug == NURVO_LOG_DEBUG && common::kLogInfo == NURVO_LOG_INFO &&
              common::kLogError == NURVO_LOG_ERROR);

void ReturnEarly(bool early) {
  CORVIS_LOG_SCOPE();
  if (early) return;
  CORVIS_LOG_REPORTING_ERROR();
}

TEST(Logger, BracketsAScopeHoweverItEnds) {
  fake::Platform::Reset();
  ReturnEarly(true);
  ReturnEarly(false);
  const std::string entry = R"(logger: ScopeLogger > logger_test: ReturnEarly\([0-9]+\) > Enter )";
  const std::string exit = R"(logger: ~ScopeLogger\([0-9]+\) > logger_test: ReturnEarly > Exit)";
  const std::string error = R"(logger_test: ReturnEarly\([0-9]+\) > Reporting error\.)";
  const std::pair<int, std::string> expected[] = {{3, entry}, {3, exit}, {3, entry}, {6, error}, {3, exit}};
  const auto& log = fake::Platform::Get().log;
  ASSERT_EQ(log.size(), std::size(expected));
  for (size_t i = 0; i < log.size(); ++i) {
    EXPECT_EQ(std::tie(log[i].priority, log[i].tag), std::make_tuple(expected[i].first, "CORVI_PLUGINS"))
        << i;
    EXPECT_THAT(log[i].text, testing::MatchesRegex(expected[i].second)) << i;
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
