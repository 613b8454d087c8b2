// The runtime's side of the library in a page: serves its interface tables, makes the page's instance, and
// carries calls and messages between it and the page's script.
#ifndef CORVIS_NPM_MODULE_HOST_H_
#define CORVIS_NPM_MODULE_HOST_H_

#include <string>

#include "nurvo/runtime.h"

namespace corvis::simulator {

// Initializes the library that is linked into this module. Returns the name under which pages find its API;
// empty when it refused.
std::string StartLibrary();

// The page's instance of the library. What it posts is queued on the bus and then handed to the page.
void OpenPage();
// The page goes: its instance is destroyed, and what still waits for the page is dropped.
void ClosePage();

// A synchronous call of the page's script. Returns the reply, empty without a page.
std::string CallLibrary(const char* message);

}  // namespace corvis::simulator

#endif  // CORVIS_NPM_MODULE_HOST_H_
