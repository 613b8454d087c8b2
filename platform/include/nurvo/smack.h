// Security labels of processes.
#ifndef NURVO_SMACK_H_
#define NURVO_SMACK_H_

#include <sys/types.h>

#ifdef __cplusplus
extern "C" {
#endif

// Gets the label of this process. Returns its length and a text that the caller releases with `free`, or a
// negative value.
ssize_t smack_new_label_from_self(char** label);

#ifdef __cplusplus
}
#endif

#endif  // NURVO_SMACK_H_
