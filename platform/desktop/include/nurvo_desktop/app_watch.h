// Watching applications come and go. An application runs from opening its first message port to closing its
// last one, or to the end of its process.
#ifndef NURVO_DESKTOP_APP_WATCH_H_
#define NURVO_DESKTOP_APP_WATCH_H_

#include <stdbool.h>

#ifdef __cplusplus
extern "C" {
#endif

// Called on the main loop when the application starts (true) and when it stops (false).
typedef void (*app_watch_cb)(const char* app_id, bool is_running, void* user_data);

typedef struct app_watch* app_watch_h;

// Watches `app_id` for changes from now on. Returns 0 and a handle for app_watch_remove, or a negative
// errno (-EINVAL for what is not an application id, others when the bus refused) and leaves `watch`
// untouched.
int app_watch_add(const char* app_id, app_watch_cb callback, void* user_data, app_watch_h* watch);

// Ends a watch, also from within its own callback; it is not called again. Returns 0, or -EINVAL for a
// handle that is not watched.
int app_watch_remove(app_watch_h watch);

// Whether the application runs now, asked of the bus. False also when the bus can't be reached.
bool app_watch_is_running(const char* app_id);

#ifdef __cplusplus
}
#endif

#endif  // NURVO_DESKTOP_APP_WATCH_H_
