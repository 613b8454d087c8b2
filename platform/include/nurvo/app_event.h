// Application events: named announcements that any application can subscribe to.
#ifndef NURVO_APP_EVENT_H_
#define NURVO_APP_EVENT_H_

#include "nurvo/bundle.h"

#ifdef __cplusplus
extern "C" {
#endif

// Called on the main loop for each event. The data stays owned by the platform.
typedef void (*event_cb)(const char* event_name, bundle* event_data, void* user_data);

typedef struct event_handler* event_handler_h;

// Subscribes to the event `name`. Returns 0 and a handle for event_remove_event_handler, or a negative code
// and leaves `handler` untouched.
int event_add_event_handler(const char* name, event_cb callback, void* user_data, event_handler_h* handler);

// Ends a subscription; its callback is not called again. Returns 0, or a negative code for a handle that
// is not subscribed.
int event_remove_event_handler(event_handler_h handler);

#ifdef __cplusplus
}
#endif

#endif  // NURVO_APP_EVENT_H_
