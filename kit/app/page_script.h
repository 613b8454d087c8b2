// What the kit evaluates in a page: functions of embedded script files, called with arguments that are JSON.
#ifndef CORVIS_KIT_APP_PAGE_SCRIPT_H_
#define CORVIS_KIT_APP_PAGE_SCRIPT_H_

#include <nlohmann/json.hpp>
#include <string>

namespace corvis::kit {

// An expression that calls a function of `script`, the text of a file that only defines functions. Nothing of
// it becomes visible to the page.
std::string CallInPage(const std::string& script, const std::string& function,
                       const nlohmann::json& arguments = nlohmann::json::array());

// The same for functions that ask what an item is: isItem of item_rules.js, and the script API's own
// element-tests.js, which decide that for the element map, are there for them.
std::string CallAboutItems(const std::string& script, const std::string& function,
                           const nlohmann::json& arguments = nlohmann::json::array());

// The same as CallInPage with one argument: a function that gives the value of the user's JavaScript
// expression.
std::string CallWithExpression(const std::string& script, const std::string& function,
                               const std::string& expression);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_APP_PAGE_SCRIPT_H_
