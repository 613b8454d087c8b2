// Passes lines of the page's console to the simulator.
#ifndef CORVIS_NPM_MODULE_CONSOLE_H_
#define CORVIS_NPM_MODULE_CONSOLE_H_

#include <string>

namespace corvis::simulator {

// Writes a line; `source` is "page" or, for the script API, "api".
void WriteConsole(const std::string& level, const std::string& text, const std::string& source);

}  // namespace corvis::simulator

#endif  // CORVIS_NPM_MODULE_CONSOLE_H_
