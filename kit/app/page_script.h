// Builds the JavaScript that the kit evaluates in a page: calls of functions from embedded script files.
#ifndef CORVIS_KIT_APP_PAGE_SCRIPT_H_
#define CORVIS_KIT_APP_PAGE_SCRIPT_H_

#include <nlohmann/json.hpp>
#include <string>

namespace corvis::kit {

// An expression that calls `function` of `script`, a source text that only defines functions, with the
// elements of the JSON array `arguments`. The page does not see its names.
std::string CallInPage(const std::string& script, const std::string& function,
                       const nlohmann::json& arguments = nlohmann::json::array());

// Like CallInPage, for scripts that need isItem of item_rules.js, which uses the script API's rules
// (element-tests.js and page-operations.js).
std::string CallAboutItems(const std::string& script, const std::string& function,
                           const nlohmann::json& arguments = nlohmann::json::array());

// Like CallInPage, with one argument: a function that returns the value of the user's JavaScript expression.
std::string CallWithExpression(const std::string& script, const std::string& function,
                               const std::string& expression);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_APP_PAGE_SCRIPT_H_
