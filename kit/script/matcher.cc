// The comparisons of the script language: one function and one table entry each.
#include "script/matcher.h"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <memory>
#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

#include "app/json_text.h"
#include "language/suggestions.h"
#include "nurvo_desktop/glib_ptr.h"
#include "output/text_forms.h"

namespace corvis::kit {

namespace {

using Json = nlohmann::json;

// is "text", or just "text".
Matcher ReadExact(LineReader& line) {
  const std::string expected = line.Text(/*may_be_bare=*/true);
  return {Quoted(expected), [expected](const std::string& actual) { return actual == expected; }};
}

Matcher ReadContains(LineReader& line) {
  const std::string part = line.Text();
  return {"contains " + Quoted(part),
          [part](const std::string& actual) { return actual.find(part) != std::string::npos; }};
}

Matcher ReadOneOf(LineReader& line) {
  line.OneOf({"of"});
  std::vector<std::string> allowed;
  while (!line.is_at_end()) allowed.push_back(line.Text(/*may_be_bare=*/true));
  if (allowed.empty()) line.Fail("Expected one or more texts, for example: one of \"a\" \"b\".");
  std::string list;
  for (const std::string& text : allowed) list += (list.empty() ? "" : ", ") + Quoted(text);
  return {"one of " + list, [allowed](const std::string& actual) {
            return std::find(allowed.begin(), allowed.end(), actual) != allowed.end();
          }};
}

// Whether `actual` has every member of `expected`, at any depth. Arrays must have the same length; all other
// values must be equal.
bool IsSubset(const Json& expected, const Json& actual) {
  if (expected.is_object() && actual.is_object()) {
    const auto members = expected.items();
    return std::all_of(members.begin(), members.end(), [&actual](const auto& member) {
      const auto found = actual.find(member.key());
      return found != actual.end() && IsSubset(member.value(), *found);
    });
  }
  if (expected.is_array() && actual.is_array()) {
    return std::equal(expected.begin(), expected.end(), actual.begin(), actual.end(), IsSubset);
  }
  return expected == actual;
}

Matcher ReadJson(LineReader& line) {
  const LineReader before = line;
  const std::string text = line.Rest("a JSON text");
  if (line.has_failed()) return {};
  const auto expected = ParseJson(text);
  if (!expected) {
    line = before;
    line.Fail(expected.error().message);
    return {};
  }
  return {"json " + text, [expected = *expected](const std::string& actual) -> Result<bool> {
            const auto parsed = ParseJson(actual);
            if (!parsed) return Fail(parsed.error());
            return IsSubset(expected, *parsed);
          }};
}

// Compiles with G_REGEX_RAW, because an answer need not be valid UTF-8.
Result<std::shared_ptr<GRegex>> NewRegex(const std::string& pattern) {
  if (pattern.find('\0') != std::string::npos) {
    return Fail("A regular expression can't contain a NUL byte. Write \\0 instead.");
  }
  GError* error = nullptr;
  std::shared_ptr<GRegex> regex =
      nurvo::GRegexPtr(g_regex_new(pattern.c_str(), G_REGEX_RAW, GRegexMatchFlags(0), &error));
  const nurvo::GErrorPtr owned(error);
  if (owned) return Fail(std::string("Invalid regular expression: ") + owned->message + ".");
  return regex;
}

// Tries one position of the text at a time, so that the time limit is checked in between.
Result<bool> HasMatch(GRegex* regex, const std::string& actual) {
  constexpr auto kMatchTime = std::chrono::seconds(2);
  const auto end = std::chrono::steady_clock::now() + kMatchTime;
  const auto size = static_cast<gssize>(actual.size());
  for (int at = 0; at <= size; ++at) {
    GError* error = nullptr;
    const bool is_match =
        g_regex_match_full(regex, actual.data(), size, at, G_REGEX_MATCH_ANCHORED, nullptr, &error) != FALSE;
    const nurvo::GErrorPtr owned(error);
    if (is_match) return true;
    if (owned || std::chrono::steady_clock::now() > end) {
      return Fail(
          "The regular expression tries too many ways to match this text. Write it without a repetition "
          "within a repetition.");
    }
  }
  return false;
}

Matcher ReadRegex(LineReader& line) {
  if (line.Peek() != '/') {
    line.Fail("Expected a regular expression between slashes.");
    return {};
  }
  const LineReader before = line;
  const std::string pattern = line.Between('/');
  if (line.has_failed()) return {};
  const auto matcher = MatcherOfRegex(pattern);
  if (matcher) return *matcher;
  line = before;
  line.Fail(matcher.error().message);
  return {};
}

struct Comparison {
  const char* word;
  Matcher (*read)(LineReader& line);
};

constexpr Comparison kComparisons[] = {{"is", ReadExact},
                                       {"contains", ReadContains},
                                       {"matches", ReadRegex},
                                       {"json", ReadJson},
                                       {"one", ReadOneOf}};

// A word before a quoted text can only be meant as a comparison.
bool IsMeantAsComparison(const LineReader& line, const std::string& word) {
  return !word.empty() && std::isalpha(static_cast<unsigned char>(word[0])) != 0 && line.HasTextAfterWord();
}

}  // namespace

Result<Matcher> MatcherOfRegex(const std::string& pattern) {
  if (const auto plain = NewRegex(pattern); !plain) return Fail(plain.error());
  // A pattern such as (a+)+$ would backtrack for years. This many steps take a fraction of a second.
  const auto limited = NewRegex("(*LIMIT_MATCH=5000000)" + pattern);
  return Matcher{"matches /" + pattern + "/",
                 [regex = *limited](const std::string& actual) { return HasMatch(regex.get(), actual); }};
}

Matcher ReadMatcher(LineReader& line) {
  if (line.is_at_end()) line.Fail("Expected a comparison, for example: is \"Play\".");
  std::vector<std::string> words;
  for (const Comparison& comparison : kComparisons) {
    if (line.TakeWord(comparison.word)) return comparison.read(line);
    words.emplace_back(comparison.word);
  }
  LineReader next = line;
  const std::string word = next.Word();
  if (!IsMeantAsComparison(line, word)) return ReadExact(line);
  line.Fail("Unknown comparison \"" + word + "\". Use is, contains, matches, json or one of." +
            DidYouMean(word, words));
  return {};
}

}  // namespace corvis::kit
