// Publishes application events, the counterpart of nurvo/app_event.h.
#ifndef NURVO_DESKTOP_EVENT_PUBLISH_H_
#define NURVO_DESKTOP_EVENT_PUBLISH_H_

#include "nurvo/bundle.h"

#ifdef __cplusplus
extern "C" {
#endif

// Publishes the event `name` (letters, digits, '.', '_' and '-', at most 255) with a copy of `data`; null
// stands for an empty bundle. Does not wait for the subscribers. Returns 0 or a negative errno: -EINVAL for
// an invalid name, -EMSGSIZE if the encoded data is larger than 64 KiB, others if the bus refuses.
int event_publish_app_event(const char* name, bundle* data);

#ifdef __cplusplus
}
#endif

#endif  // NURVO_DESKTOP_EVENT_PUBLISH_H_
