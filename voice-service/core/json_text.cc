// By nlohmann's JSON.
#include "core/json_text.h"

#include <nlohmann/json.hpp>

namespace corvis::voice {

std::string JsonText(const std::string& text) {
  // ASCII only, so that the text may stand in any script.
  return nlohmann::json(text).dump(-1, ' ', true, nlohmann::json::error_handler_t::replace);
}

std::string PlainValue(const std::string& json) {
  const auto parsed = nlohmann::json::parse(json, nullptr, /*allow_exceptions=*/false);
  return parsed.is_string() ? parsed.get<std::string>() : json;
}

}  // namespace corvis::voice
