// Texts to and from the JSON that the page's values travel in.
#ifndef CORVIS_KIT_APP_JSON_TEXT_H_
#define CORVIS_KIT_APP_JSON_TEXT_H_

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace corvis::kit {

// The text as JSON, which is also a JavaScript literal. Bytes that are no UTF-8 are replaced.
std::string JsonText(const std::string& text);

// A text value without its quotation marks; any other value as it stands.
std::string PlainValue(const std::string& json);

// The value of a JSON text, nested at most 200 levels deep so that it can be walked by recursion. Otherwise
// the value is discarded and `problem` is a sentence about "this".
nlohmann::json ParseJson(const std::string& text, std::string& problem);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_APP_JSON_TEXT_H_
