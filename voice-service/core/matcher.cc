// Comparing texts, regular expressions (GLib's) and JSON.
#include "core/matcher.h"

#include <glib.h>

#include <algorithm>
#include <memory>
#include <nlohmann/json.hpp>

namespace corvis::voice {

namespace {

using Json = nlohmann::json;

Json ParseJson(const std::string& text) {
  return Json::parse(text, nullptr, /*allow_exceptions=*/false);
}

bool IsSubset(const Json& expected, const Json& actual) {
  if (expected.is_object() && actual.is_object()) {
    for (const auto& [key, value] : expected.items()) {
      if (!actual.contains(key) || !IsSubset(value, actual[key])) return false;
    }
    return true;
  }
  if (expected.is_array() && actual.is_array()) {
    return std::equal(expected.begin(), expected.end(), actual.begin(), actual.end(), IsSubset);
  }
  return expected == actual;
}

bool IsJsonMatch(const std::string& expected, const std::string& actual) {
  const Json parsed = ParseJson(actual);
  return !parsed.is_discarded() && IsSubset(ParseJson(expected), parsed);
}

struct RegexDeleter {
  void operator()(GRegex* regex) const { g_regex_unref(regex); }
};
using RegexPtr = std::unique_ptr<GRegex, RegexDeleter>;

// Raw: answers are bytes, which need not be UTF-8.
RegexPtr NewRegex(const std::string& pattern, std::string& problem) {
  GError* error = nullptr;
  RegexPtr regex(g_regex_new(pattern.c_str(), G_REGEX_RAW, GRegexMatchFlags(0), &error));
  if (error != nullptr) {
    problem = error->message;
    g_error_free(error);
  }
  return regex;
}

bool IsRegexMatch(const std::string& pattern, const std::string& actual) {
  std::string ignored;
  const RegexPtr regex = NewRegex(pattern, ignored);
  return regex && g_regex_match_full(regex.get(), actual.data(), static_cast<gssize>(actual.size()), 0,
                                     GRegexMatchFlags(0), nullptr, nullptr) != FALSE;
}

}  // namespace

bool Matches(const Matcher& matcher, const std::string& actual) {
  const std::string& expected = matcher.texts.front();
  switch (matcher.kind) {
    case MatchKind::kExact:
      return actual == expected;
    case MatchKind::kContains:
      return actual.find(expected) != std::string::npos;
    case MatchKind::kMatches:
      return IsRegexMatch(expected, actual);
    case MatchKind::kJson:
      return IsJsonMatch(expected, actual);
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
  if (matcher.kind == MatchKind::kMatches && !NewRegex(matcher.texts.front(), problem)) {
    return "This is no regular expression: " + problem + ".";
  }
  if (matcher.kind == MatchKind::kJson && ParseJson(matcher.texts.front()).is_discarded())
    return "This is no JSON.";
  return "";
}

std::string Quoted(const std::string& text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') quoted += '\\';
    if (c == '\n') {
      quoted += "\\n";
    } else if (c == '\t') {
      quoted += "\\t";
    } else {
      quoted += c;
    }
  }
  return quoted + '"';
}

}  // namespace corvis::voice
