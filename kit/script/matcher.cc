// Comparing texts, regular expressions (GLib's) and JSON.
#include "script/matcher.h"

#include <algorithm>
#include <chrono>
#include <nlohmann/json.hpp>
#include <string_view>

#include "app/json_text.h"
#include "nurvo_desktop/glib_ptr.h"

namespace corvis::kit {

namespace {

using Json = nlohmann::json;

// A pattern such as (a+)+$ would try for years. This many steps at one place take a fraction of a second.
constexpr const char* kStepLimit = "(*LIMIT_MATCH=5000000)";
// For all places of a text.
constexpr auto kMatchTime = std::chrono::seconds(2);

bool IsSubset(const Json& expected, const Json& actual) {
  if (expected.is_object() && actual.is_object()) {
    const auto members = expected.items();
    return std::all_of(members.begin(), members.end(), [&actual](const auto& member) {
      return actual.contains(member.key()) && IsSubset(member.value(), actual[member.key()]);
    });
  }
  if (expected.is_array() && actual.is_array()) {
    return std::equal(expected.begin(), expected.end(), actual.begin(), actual.end(), IsSubset);
  }
  return expected == actual;
}

bool IsJsonMatch(const std::string& expected, const std::string& actual, std::string& problem) {
  const Json parsed = ParseJson(actual, problem);
  return !parsed.is_discarded() && IsSubset(ParseJson(expected, problem), parsed);
}

// Raw: answers are bytes, which need not be UTF-8.
nurvo::GRegexPtr NewRegex(const std::string& pattern, std::string& problem) {
  GError* error = nullptr;
  nurvo::GRegexPtr regex(g_regex_new(pattern.c_str(), G_REGEX_RAW, GRegexMatchFlags(0), &error));
  const nurvo::GErrorPtr owned(error);
  if (owned) problem = std::string("This is no regular expression: ") + owned->message + ".";
  return regex;
}

// Tries one place of the text after the other, so that the time can be watched in between.
bool IsRegexMatch(const std::string& pattern, const std::string& actual, std::string& problem) {
  const nurvo::GRegexPtr regex = NewRegex(kStepLimit + pattern, problem);
  const auto end = std::chrono::steady_clock::now() + kMatchTime;
  const auto size = static_cast<gssize>(actual.size());
  for (int at = 0; regex && at <= size; ++at) {
    GError* error = nullptr;
    const bool is_match = g_regex_match_full(regex.get(), actual.data(), size, at, G_REGEX_MATCH_ANCHORED,
                                             nullptr, &error) != FALSE;
    const nurvo::GErrorPtr owned(error);
    if (is_match) return true;
    if (owned || std::chrono::steady_clock::now() > end) {
      problem =
          "The regular expression was given up: it tries too many ways to match this text; write it "
          "without a repetition within a repetition.";
      return false;
    }
  }
  return false;
}

}  // namespace

bool Matches(const Matcher& matcher, const std::string& actual, std::string* problem) {
  std::string ignored;
  std::string& trouble = problem == nullptr ? ignored : *problem;
  const std::string& expected = matcher.texts.front();
  switch (matcher.kind) {
    case MatchKind::kExact:
      return actual == expected;
    case MatchKind::kContains:
      return actual.find(expected) != std::string::npos;
    case MatchKind::kMatches:
      return IsRegexMatch(expected, actual, trouble);
    case MatchKind::kJson:
      return IsJsonMatch(expected, actual, trouble);
    case MatchKind::kOneOf:
      return std::find(matcher.texts.begin(), matcher.texts.end(), actual) != matcher.texts.end();
  }
  return false;
}

std::string Describe(const Matcher& matcher) {
  switch (matcher.kind) {
    case MatchKind::kExact:
      return Quoted(matcher.texts.front());
    case MatchKind::kContains:
      return "contains " + Quoted(matcher.texts.front());
    case MatchKind::kMatches:
      return "matches /" + matcher.texts.front() + "/";
    case MatchKind::kJson:
      return "json " + matcher.texts.front();
    case MatchKind::kOneOf:
      break;
  }
  std::string text;
  for (const std::string& allowed : matcher.texts)
    text += (text.empty() ? "one of " : ", ") + Quoted(allowed);
  return text;
}

std::string MatcherProblem(const Matcher& matcher) {
  std::string problem;
  const std::string& expected = matcher.texts.front();
  if (matcher.kind == MatchKind::kMatches) {
    if (expected.find('\0') != std::string::npos)
      return "A regular expression can't hold a NUL byte; write \\0.";
    NewRegex(expected, problem);
  }
  if (matcher.kind == MatchKind::kJson) ParseJson(expected, problem);
  return problem;
}

std::string Quoted(const std::string& text) {
  constexpr std::string_view kEscaped = "\"\\\n\t\r";
  constexpr std::string_view kEscapes = "\"\\ntr";
  constexpr const char* kDigits = "0123456789abcdef";
  std::string quoted = "\"";
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    const size_t escape = kEscaped.find(c);
    if (escape != std::string_view::npos) {
      quoted.append({'\\', kEscapes[escape]});
    } else if (byte < ' ') {
      quoted.append({'\\', 'x', kDigits[byte >> 4U], kDigits[byte & 0xFU]});
    } else {
      quoted += c;
    }
  }
  return quoted + '"';
}

}  // namespace corvis::kit
