// Watches the start and end of applications. An application counts as running from opening its first message
// port until it closes the last one or its process ends.
#ifndef NURVO_DESKTOP_APP_WATCH_H_
#define NURVO_DESKTOP_APP_WATCH_H_

#include <stdbool.h>

#ifdef __cplusplus
extern "C" {
#endif

// Called on the main loop when the application starts (`is_running` is true) or ends (false).
typedef void (*app_watch_cb)(const char* app_id, bool is_running, void* user_data);

typedef struct app_watch* app_watch_h;

// Watches `app_id` for changes from now on. Returns 0 and a handle for app_watch_remove, or a negative errno
// and leaves `watch` unchanged: -EINVAL if `app_id` is not an application id, others if the bus refuses.
int app_watch_add(const char* app_id, app_watch_cb callback, void* user_data, app_watch_h* watch);

// Ends a watch; its callback is not called again. May be called from the callback. Returns 0, or -EINVAL for
// an unknown handle.
int app_watch_remove(app_watch_h watch);

// Asks the bus whether the application is running. Also returns false if the bus can't be reached.
bool app_watch_is_running(const char* app_id);

#ifdef __cplusplus
}
#endif

#endif  // NURVO_DESKTOP_APP_WATCH_H_
