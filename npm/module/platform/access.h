// What the page's application holds.
#ifndef CORVIS_NPM_MODULE_PLATFORM_ACCESS_H_
#define CORVIS_NPM_MODULE_PLATFORM_ACCESS_H_

#include <set>
#include <string>

namespace corvis::simulator {

// From now on the application holds these privileges (URIs) and no others.
void Grant(std::set<std::string> privileges);

}  // namespace corvis::simulator

#endif  // CORVIS_NPM_MODULE_PLATFORM_ACCESS_H_
