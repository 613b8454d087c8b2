// The runtime of the library in a page: serves the interface tables, creates the page's instance, and passes
// calls and messages between it and the page's script.
#ifndef CORVIS_NPM_MODULE_HOST_H_
#define CORVIS_NPM_MODULE_HOST_H_

#include <string>

#include "nurvo/runtime.h"

namespace corvis::simulator {

// Initializes the library that is linked into this module. Returns the name under which pages find its API,
// or an empty string on failure.
std::string StartLibrary();

// Creates the page's instance of the library. Messages that it posts are queued on the bus and then delivered
// to the page.
void OpenPage();
// Destroys the page's instance and drops the messages that are queued for the page.
void ClosePage();

// Handles a synchronous call of the page's script. Returns the reply, which is empty without a page.
std::string CallLibrary(const char* message);

}  // namespace corvis::simulator

#endif  // CORVIS_NPM_MODULE_HOST_H_
