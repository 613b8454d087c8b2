// Parses with nlohmann-json, after a check of the nesting depth.
#include "app/json_text.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace corvis::kit {

namespace {
using Json = nlohmann::json;
constexpr int kDeepestJson = 200;

// The deepest nesting of brackets. Meaningless, but harmless, for text that is not JSON.
int Depth(const std::string& text) {
  int depth = 0;
  int deepest = 0;
  bool is_in_string = false;
  for (size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (c == '"') is_in_string = !is_in_string;
    if (is_in_string && c == '\\') ++i;
    if (is_in_string) continue;
    if (c == '[' || c == '{') deepest = std::max(deepest, ++depth);
    if (c == ']' || c == '}') --depth;
  }
  return deepest;
}
}  // namespace

std::string PlainValue(const std::string& json) {
  // Only strings need parsing.
  if (json.find_first_not_of(" \t\r\n") != json.find('"')) return json;
  const auto parsed = Json::parse(json, nullptr, /*allow_exceptions=*/false);
  return parsed.is_string() ? parsed.get<std::string>() : json;
}

Result<Json> ParseJson(const std::string& text) {
  if (Depth(text) > kDeepestJson) {
    return Fail("This JSON is nested more than " + std::to_string(kDeepestJson) + " levels deep.");
  }
  Json parsed = Json::parse(text, nullptr, /*allow_exceptions=*/false);
  if (parsed.is_discarded()) return Fail("This is not JSON.");
  return parsed;
}

}  // namespace corvis::kit
