// The client of the access-control policy service.
#ifndef NURVO_VESTRA_H_
#define NURVO_VESTRA_H_

#include <stddef.h>
#include <sys/types.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct vestra vestra;
typedef struct vestra_configuration vestra_configuration;

// The result of vestra_check if access is allowed; every other result is a refusal.
enum { VESTRA_API_ACCESS_ALLOWED = 2 };

// Creates a configuration, to be released with vestra_configuration_destroy. Returns 0 or an error code.
int vestra_configuration_create(vestra_configuration** configuration);

// Sets the number of answers that the client may cache. Returns 0 or an error code.
int vestra_configuration_set_cache_size(vestra_configuration* configuration, size_t size);

// Opens a client. Returns 0 and a client that exists until the process ends, or an error code.
int vestra_initialize(vestra** client, const vestra_configuration* configuration);

// Releases a configuration; null is allowed.
void vestra_configuration_destroy(vestra_configuration* configuration);

// Returns the session of the process `pid`, or null. The caller releases it with `free`.
char* vestra_session_from_pid(pid_t pid);

// Checks whether `client` (a security label), in `client_session` and run by `user`, holds `privilege`.
// Returns VESTRA_API_ACCESS_ALLOWED, another non-negative value for a refusal, or a negative error code.
int vestra_check(vestra* v, const char* client, const char* client_session, const char* user,
                 const char* privilege);

#ifdef __cplusplus
}
#endif

#endif  // NURVO_VESTRA_H_
