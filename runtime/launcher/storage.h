// The storage of the web engine.
#ifndef CORVIS_RUNTIME_LAUNCHER_STORAGE_H_
#define CORVIS_RUNTIME_LAUNCHER_STORAGE_H_

#include <webkit2/webkit2.h>

#include <functional>
#include <string>

#include "nurvo_desktop/glib_ptr.h"

namespace corvis::tv {

// Creates an engine that stores its data in the folder `profile`. Without a folder it can't clear service
// workers.
nurvo::GObjectPtr<WebKitWebContext> NewWebContext(const std::string& profile);

// Removes all data that pages have stored. `done` receives an error message, empty on success.
void ClearStorage(WebKitWebContext* context, std::function<void(const std::string& error)> done);

// Creates a profile's folder, accessible only to its user, if necessary. Returns an error message, empty on
// success.
std::string MakeProfile(const std::string& profile);

// The HOST:PORT at which the profile's application was served; empty for a new profile. It is served there
// again, because stored data belongs to an origin.
std::string ReadAuthority(const std::string& profile);
bool WriteAuthority(const std::string& profile, const std::string& authority);

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_LAUNCHER_STORAGE_H_
