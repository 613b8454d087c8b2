// The privileges of the page's application.
#ifndef CORVIS_NPM_MODULE_PLATFORM_ACCESS_H_
#define CORVIS_NPM_MODULE_PLATFORM_ACCESS_H_

#include <set>
#include <string>

namespace corvis::simulator {

// Replaces the application's privileges with these (URIs).
void Grant(std::set<std::string> privileges);

}  // namespace corvis::simulator

#endif  // CORVIS_NPM_MODULE_PLATFORM_ACCESS_H_
