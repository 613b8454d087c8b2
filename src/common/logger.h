// The library's common log lines: scope entry and exit, failed assertions, and errors on their way to the
// page. They go to the main buffer of the platform log under the tag "CORVI_PLUGINS".
#ifndef CORVIS_COMMON_LOGGER_H_
#define CORVIS_COMMON_LOGGER_H_

#include <cstddef>
#include <string>

#include "nurvo/log.h"

namespace common {

constexpr int kMainLog = 0;
constexpr int kLogDebug = 3;
constexpr int kLogInfo = 4;
constexpr int kLogError = 6;
constexpr const char* kCommonLogTag = "CORVI_PLUGINS";

// Whether lines are written at all. A build with CORVIS_WITHOUT_LOGS has no log calls, to measure what they
// cost, but the scopes' copies; failed assertions still leave their line.
#ifdef CORVIS_WITHOUT_LOGS
constexpr bool kHasLogs = false;
#else
constexpr bool kHasLogs = true;
#endif

// The base name of a source file, without folder and ending, found at compile time from __FILE__.
template <size_t size>
struct SourceName {
  char text[size] = {};

  constexpr explicit SourceName(const char (&path)[size]) {
    size_t begin = 0;
    for (size_t i = 0; i + 1 < size; ++i) {
      if (path[i] == '/') begin = i + 1;
    }
    for (size_t i = begin; i + 1 < size && path[i] != '.'; ++i) text[i - begin] = path[i];
  }
};

// Brackets what an operation logs: writes the entry line when it is made and the exit line when it goes,
// however the operation ends. Never throws from its destructor.
class ScopeLogger {
 public:
  ScopeLogger(const char* file, const char* function, int line);
  ~ScopeLogger();
  ScopeLogger(const ScopeLogger&) = delete;
  ScopeLogger& operator=(const ScopeLogger&) = delete;

 private:
  // Copies, so that the exit line is right whatever its callers do with their texts in between.
  std::string file_;
  std::string function_;
};

// Where in the source a common log line comes from.
struct SourcePlace {
  const char* file;      // base name
  const char* path;      // full path, for the standard assertion
  const char* function;  // undecorated name
  const char* signature;
  int line;
};

// Writes the assertion line and ends the process through the standard assertion failure. `expression` is
// the text that the standard failure shows; `message` may be empty.
[[noreturn]] void FailAssertion(const SourcePlace& place, const char* condition, const char* message,
                                const char* expression);

}  // namespace common

// The base name of the current source file, a text that lives as long as the process.
#define CORVIS_FILE                                       \
  ([] {                                                   \
    static constexpr ::common::SourceName name(__FILE__); \
    return static_cast<const char*>(name.text);           \
  }())

// First statement of a scope-logged operation.
#define CORVIS_LOG_SCOPE() CORVIS_LOG_SCOPE_OF(__func__)
// The same for an operation that logs under another name than its own.
#define CORVIS_LOG_SCOPE_OF(function) \
  const ::common::ScopeLogger scope_logger(CORVIS_FILE, function, __LINE__)

// The one way to the platform's log: a call of one of its functions, whose arguments are worked out only in a
// build with logs.
#define CORVIS_LOG_CALL(call) \
  do {                        \
    if (::common::kHasLogs) { \
      call;                   \
    }                         \
  } while (false)

// One common line at error priority; `text` is a literal without conversions.
#define CORVIS_LOG_ERROR_OF(function, text)                                                      \
  CORVIS_LOG_CALL(log_print_to(::common::kMainLog, ::common::kLogError, ::common::kCommonLogTag, \
                               "%s: %s(%d) > " text, CORVIS_FILE, function, __LINE__))

// Goes before every error that is reported to the page.
#define CORVIS_LOG_REPORTING_ERROR() CORVIS_LOG_ERROR_OF(__func__, "Reporting error.")

// Ends the process when `condition` does not hold, in every kind of build. `message` is a string literal.
#define CORVIS_ASSERT(condition, message)                                                                   \
  do {                                                                                                      \
    if (!(condition)) {                                                                                     \
      ::common::FailAssertion({CORVIS_FILE, __FILE__, __func__, __PRETTY_FUNCTION__, __LINE__}, #condition, \
                              message, "!!(" #condition ") && " #message);                                  \
    }                                                                                                       \
  } while (false)

#endif  // CORVIS_COMMON_LOGGER_H_
