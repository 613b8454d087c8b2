// By nlohmann's JSON.
#include "app/json_text.h"

#include <nlohmann/json.hpp>

namespace corvis::kit {

namespace {
using Json = nlohmann::json;
constexpr int kDeepestJson = 200;
}  // namespace

std::string JsonText(const std::string& text) {
  // ASCII only, so that the text may stand in any script.
  return Json(text).dump(-1, ' ', true, Json::error_handler_t::replace);
}

std::string PlainValue(const std::string& json) {
  // Other values need not be read at all.
  if (json.find_first_not_of(" \t\r\n") != json.find('"')) return json;
  const auto parsed = Json::parse(json, nullptr, /*allow_exceptions=*/false);
  return parsed.is_string() ? parsed.get<std::string>() : json;
}

Json ParseJson(const std::string& text, std::string& problem) {
  bool is_too_deep = false;
  const auto watch_depth = [&is_too_deep](int depth, Json::parse_event_t /*event*/, Json& /*value*/) {
    is_too_deep = is_too_deep || depth >= kDeepestJson;
    return !is_too_deep;
  };
  Json parsed = Json::parse(text, watch_depth, /*allow_exceptions=*/false);
  if (is_too_deep) {
    problem = "This JSON is nested more than " + std::to_string(kDeepestJson) + " levels deep.";
    return {Json::value_t::discarded};
  }
  if (parsed.is_discarded()) problem = "This is no JSON.";
  return parsed;
}

}  // namespace corvis::kit
