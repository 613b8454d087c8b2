// The page's console, on its way to whoever watches it.
#ifndef CORVIS_NPM_MODULE_CONSOLE_H_
#define CORVIS_NPM_MODULE_CONSOLE_H_

#include <string>

namespace corvis::simulator {

// A line of the page ("page") or of the script API ("api").
void WriteConsole(const std::string& level, const std::string& text, const std::string& source);

}  // namespace corvis::simulator

#endif  // CORVIS_NPM_MODULE_CONSOLE_H_
