// The platform log.
#ifndef NURVO_LOG_H_
#define NURVO_LOG_H_

#ifdef __cplusplus
extern "C" {
#endif

// Priorities, least severe first.
enum {
  NURVO_LOG_VERBOSE = 2,
  NURVO_LOG_DEBUG = 3,
  NURVO_LOG_INFO = 4,
  NURVO_LOG_WARN = 5,
  NURVO_LOG_ERROR = 6,
  NURVO_LOG_FATAL = 7,
};

// Writes one line of any length, formatted like printf. Returns the number of bytes written, 0 if the
// priority is below the log's threshold, or a negative value on failure.
int log_print(int priority, const char* tag, const char* format, ...) __attribute__((format(printf, 3, 4)));

// Like log_print, into the log buffer `buffer_id`; 0 is the main log.
int log_print_to(int buffer_id, int priority, const char* tag, const char* format, ...)
    __attribute__((format(printf, 4, 5)));

#ifdef __cplusplus
}
#endif

#endif  // NURVO_LOG_H_
