// The application manager: maps processes to applications.
#ifndef NURVO_APP_MANAGER_H_
#define NURVO_APP_MANAGER_H_

#include <sys/types.h>

#ifdef __cplusplus
extern "C" {
#endif

// Gets the application id of the process `pid`. Returns 0 and a text that the caller releases with `free`, or
// a negative code and leaves `app_id` unchanged.
int app_manager_get_app_id(pid_t pid, char** app_id);

#ifdef __cplusplus
}
#endif

#endif  // NURVO_APP_MANAGER_H_
