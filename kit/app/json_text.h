// Parses the JSON in which the page's values arrive. output/text_forms.h is the writing side.
#ifndef CORVIS_KIT_APP_JSON_TEXT_H_
#define CORVIS_KIT_APP_JSON_TEXT_H_

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "base/result.h"

namespace corvis::kit {

// The contents of a JSON string; any other value unchanged.
std::string PlainValue(const std::string& json);

// Parses JSON nested at most 200 levels deep, so that recursion over the value is safe. Error messages call
// the text "this".
Result<nlohmann::json> ParseJson(const std::string& text);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_APP_JSON_TEXT_H_
