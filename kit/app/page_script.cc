// Builds the expressions as immediately invoked functions, which keeps their names out of the page.
#include "app/page_script.h"

#include "element-tests_script.h"
#include "item_rules_script.h"
#include "page-operations_script.h"

namespace corvis::kit {

namespace {

std::string Call(const std::string& script, const std::string& function, const std::string& arguments) {
  return "(function () {" + script + "\nreturn " + function + "(" + arguments + "); })()";
}

}  // namespace

std::string CallInPage(const std::string& script, const std::string& function,
                       const nlohmann::json& arguments) {
  // ASCII only, because old engines treat U+2028 as the end of a line.
  const std::string list = arguments.dump(-1, ' ', true, nlohmann::json::error_handler_t::replace);
  return Call(script, function, list.substr(1, list.size() - 2));
}

std::string CallAboutItems(const std::string& script, const std::string& function,
                           const nlohmann::json& arguments) {
  return CallInPage(std::string(kPageOperations) + kElementTests + kItemRules + script, function, arguments);
}

std::string CallWithExpression(const std::string& script, const std::string& function,
                               const std::string& expression) {
  // The newline ends a trailing // comment of the user.
  return Call(script, function, "function () { return (" + expression + "\n); }");
}

}  // namespace corvis::kit
