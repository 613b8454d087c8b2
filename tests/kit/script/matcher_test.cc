// Comparing answers with what is expected, and JSON texts.
#include "script/matcher.h"

#include <gmock/gmock.h>

#include <chrono>

#include "app/json_text.h"

namespace corvis::kit {
namespace {

using testing::HasSubstr;

std::string Nested(size_t levels) {
  return std::string(levels, '[') + std::string(levels, ']');
}

struct Row {
  Matcher matcher;
  std::string actual;
  bool is_match;
};

TEST(Matcher, Kinds) {
  const Row rows[] = {
      {{MatchKind::kExact, {"a"}}, "a", true},
      {{MatchKind::kExact, {"a"}}, std::string("a\0", 2), false},
      {{MatchKind::kContains, {"b"}}, "abc", true},
      {{MatchKind::kContains, {"B"}}, "abc", false},
      {{MatchKind::kMatches, {"^a.z$"}}, "a\xffz", true},
      {{MatchKind::kMatches, {"c"}}, std::string("a\0c", 3), true},
      {{MatchKind::kMatches, {"^b"}}, "ab", false},
      {{MatchKind::kOneOf, {"a", "b"}}, "b", true},
      {{MatchKind::kOneOf, {"a", "b"}}, "ab", false},
      {{MatchKind::kJson, {R"({"a":[1,{"c":null}]})"}}, R"({"z":0,"a":[1.0,{"c":null,"d":2}]})", true},
      {{MatchKind::kJson, {R"({"a":[1]})"}}, R"({"a":[1,2]})", false},
      {{MatchKind::kJson, {R"({"a":null})"}}, "{}", false},
      {{MatchKind::kJson, {"1"}}, "\"1\"", false},
      {{MatchKind::kJson, {"[]"}}, "{}", false},
      {{MatchKind::kJson, {Nested(150)}}, Nested(150), true},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(Matches(row.matcher, row.actual), row.is_match) << Describe(row.matcher) << " : " << row.actual;
    EXPECT_EQ(MatcherProblem(row.matcher), "");
  }
}

// Each of these once ended the process, or kept it busy for good.
TEST(Matcher, GivesUpWithASentence) {
  std::string problem;
  EXPECT_FALSE(Matches({MatchKind::kJson, {"[]"}}, Nested(50'000), &problem));
  EXPECT_THAT(problem, HasSubstr("levels deep"));
  problem.clear();
  EXPECT_FALSE(Matches({MatchKind::kJson, {"[]"}}, "[", &problem));
  EXPECT_THAT(problem, HasSubstr("no JSON"));
  // Many ways at one place, and many at each of many places.
  std::string runs;
  while (runs.size() < 100'000) runs += "aaaaaaaaaaaaaaaa!";
  const auto begin = std::chrono::steady_clock::now();
  for (const std::string& text : {std::string(100'000, 'a') + '!', runs}) {
    problem.clear();
    EXPECT_FALSE(Matches({MatchKind::kMatches, {"(a+)+$"}}, text, &problem));
    EXPECT_THAT(problem, HasSubstr("too many ways"));
  }
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(8));
}

TEST(Matcher, TellsWhatCannotBeUsed) {
  EXPECT_THAT(MatcherProblem({MatchKind::kMatches, {"(a"}}), HasSubstr("no regular expression"));
  EXPECT_THAT(MatcherProblem({MatchKind::kMatches, {std::string("a\0b", 3)}}), HasSubstr("NUL"));
  EXPECT_THAT(MatcherProblem({MatchKind::kJson, {"{a:1}"}}), HasSubstr("no JSON"));
  EXPECT_THAT(MatcherProblem({MatchKind::kJson, {Nested(50'000)}}), HasSubstr("levels deep"));
}

TEST(Matcher, QuotesWhatWouldBreakALine) {
  EXPECT_EQ(Quoted("a\"\\\n\t\r\x1b[0m é"), R"("a\"\\\n\t\r\x1b[0m é")");
}

TEST(JsonText, GoesIntoAnyScriptAndComesBack) {
  EXPECT_EQ(JsonText("</script>\"\n\xe2\x80\xa8"), R"("</script>\"\n\u2028")");
  EXPECT_EQ(JsonText("\xff"), R"("\ufffd")");
  for (const std::string& text : {std::string(), std::string("a\0b", 3), std::string("é \"\\ \x01")}) {
    EXPECT_EQ(PlainValue(JsonText(text)), text);
  }
  for (const char* other : {"null", "3", "{\"a\":\"b\"}", "\"open", "", " [\"a\"]"})
    EXPECT_EQ(PlainValue(other), other);
}

}  // namespace
}  // namespace corvis::kit
