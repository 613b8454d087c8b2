// Reading the JSON that the page's values travel in. output/text_forms.h writes it.
#ifndef CORVIS_KIT_APP_JSON_TEXT_H_
#define CORVIS_KIT_APP_JSON_TEXT_H_

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "base/result.h"

namespace corvis::kit {

// A text value without its quotation marks; any other value as it stands.
std::string PlainValue(const std::string& json);

// The value of a JSON text, nested at most 200 levels deep so that it can be walked by recursion. An error's
// message is about "this".
Result<nlohmann::json> ParseJson(const std::string& text);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_APP_JSON_TEXT_H_
