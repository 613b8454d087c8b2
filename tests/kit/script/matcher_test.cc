// Reading matchers, and comparing texts with them.
#include "script/matcher.h"

#include <gmock/gmock.h>

#include <chrono>
#include <fstream>

#include "app/json_text.h"

namespace corvis::kit {
namespace {

using testing::HasSubstr;

std::string Nested(size_t levels) {
  return std::string(levels, '[') + std::string(levels, ']');
}

Matcher ReadMatcher(const std::string& text) {
  LineReader line(text);
  Matcher matcher = ReadMatcher(line);
  line.End();
  EXPECT_EQ(line.problem(), "") << text;
  return matcher;
}

// "yes", "no", or why the two can't be compared.
std::string Match(const std::string& matcher, const std::string& actual) {
  const Result<bool> is_match = ReadMatcher(matcher).matches(actual);
  return !is_match ? is_match.error().message : *is_match ? "yes" : "no";
}

struct MatcherRow {
  const char* written;
  const char* described;
  std::string actual;
  const char* is_match;
};

TEST(Matcher, ComparesAsItIsWritten) {
  const MatcherRow rows[] = {
      {R"(is "a b")", R"("a b")", "a b", "yes"},
      {"success", R"("success")", "success", "yes"},
      {"is is", R"("is")", "is", "yes"},
      {R"("a")", R"("a")", std::string("a\0", 2), "no"},
      {R"(contains "b")", R"(contains "b")", "abc", "yes"},
      {R"(contains "B")", R"(contains "B")", "abc", "no"},
      {R"(contains `"a\n"`)", R"(contains "\"a\\n\"")", R"(x"a\n")", "yes"},
      {R"(matches /a\/b\d/)", R"(matches /a/b\d/)", "a/b7", "yes"},
      {"matches /^a.z$/", "matches /^a.z$/", "a\xffz", "yes"},
      {"matches /c/", "matches /c/", std::string("a\0c", 3), "yes"},
      {"matches /^b/", "matches /^b/", "ab", "no"},
      {R"(one of a "b c")", R"(one of "a", "b c")", "b c", "yes"},
      {"one of a b", R"(one of "a", "b")", "ab", "no"},
      {R"(json {"a":[1,{"c":null}]})", R"(json {"a":[1,{"c":null}]})",
       R"({"z":0,"a":[1.0,{"c":null,"d":2}]})", "yes"},
      {R"(json {"a":[1]})", R"(json {"a":[1]})", R"({"a":[1,2]})", "no"},
      {R"(json {"a":null})", R"(json {"a":null})", "{}", "no"},
      {"json 1", "json 1", R"("1")", "no"},
      {"json []", "json []", "{}", "no"},
      {R"(json "[\"[")", R"(json "[\"[")", R"("[\"[")", "yes"},
      {"json []", "json []", "[", "This is not JSON."},
      {"json []", "json []", Nested(50'000), "This JSON is nested more than 200 levels deep."},
  };
  for (const MatcherRow& row : rows) {
    EXPECT_EQ(ReadMatcher(row.written).description, row.described);
    EXPECT_EQ(Match(row.written, row.actual), row.is_match)
        << row.written << " : " << row.actual.substr(0, 99);
  }
  EXPECT_EQ(Match("json " + Nested(150), Nested(150)), "yes");
}

TEST(Matcher, SaysWhatCannotBeRead) {
  const std::pair<std::string, const char*> rows[] = {
      {"", "1: Expected a comparison, for example: is \"Play\"."},
      {"equals \"a\"", "1: Unknown comparison \"equals\". Use is, contains, matches, json or one of."},
      {"contain \"a\"",
       "1: Unknown comparison \"contain\". Use is, contains, matches, json or one of. Did you mean "
       "\"contains\"?"},
      {"contains a", "10: Expected a text in quotation marks."},
      {"matches a", "9: Expected a regular expression between slashes."},
      {"matches /a", "9: The closing / is missing."},
      {std::string("matches /a\0b/", 13),
       "9: A regular expression can't contain a NUL byte. Write \\0 instead."},
      {"json", "5: Expected a JSON text."},
      {"json {a:1}", "6: This is not JSON."},
      {"json " + Nested(50'000), "6: This JSON is nested more than 200 levels deep."},
      {"one a", "5: Expected of, not \"a\"."},
      {"one of", "7: Expected one or more texts, for example: one of \"a\" \"b\"."},
  };
  for (const auto& [text, problem] : rows) {
    LineReader line(text);
    ReadMatcher(line);
    EXPECT_EQ(std::to_string(line.problem_column()) + ": " + line.problem(), problem);
  }
  LineReader line("matches /(a/");
  ReadMatcher(line);
  EXPECT_THAT(line.problem(), HasSubstr("Invalid regular expression: "));
}

// Each of these once kept the process busy for good: many ways at one place, and many at each of many places.
TEST(Matcher, GivesUpInTime) {
  std::string runs;
  while (runs.size() < 100'000) runs += "aaaaaaaaaaaaaaaa!";
  const auto begin = std::chrono::steady_clock::now();
  for (const std::string& text : {std::string(100'000, 'a') + '!', runs})
    EXPECT_THAT(Match("matches /(a+)+$/", text), HasSubstr("too many ways"));
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(8));
}

// A list of so many objects once took 22 seconds.
TEST(Matcher, ReadsLongListsInProportionateTime) {
  std::string list = "[{}";
  for (int i = 1; i < 400'000; ++i) list += ",{\"a\":1}";
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(Match("json [1]", list + "]"), "no");
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
}

TEST(PlainValue, LeavesWhatIsNoText) {
  for (const char* other : {"null", "3", "{\"a\":\"b\"}", "\"open", "", " [\"a\"]"})
    EXPECT_EQ(PlainValue(other), other);
  EXPECT_EQ(PlainValue(R"("a\u0000\u00e9\"")"), std::string("a\0é\"", 5));
}

}  // namespace
}  // namespace corvis::kit
