// The other side of nurvo/app_event.h: announcing an event to every application that subscribed to it.
#ifndef NURVO_DESKTOP_EVENT_PUBLISH_H_
#define NURVO_DESKTOP_EVENT_PUBLISH_H_

#include "nurvo/bundle.h"

#ifdef __cplusplus
extern "C" {
#endif

// Publishes the event `name` (letters, digits, '.', '_' and '-', at most 255) with a copy of `data`; null
// means an empty bundle. Does not wait for the subscribers. Returns 0 or a negative errno:
// -EINVAL for a bad name, -EMSGSIZE for data of more than 64 KiB encoded, others when the bus refused.
int event_publish_app_event(const char* name, bundle* data);

#ifdef __cplusplus
}
#endif

#endif  // NURVO_DESKTOP_EVENT_PUBLISH_H_
