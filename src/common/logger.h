// The library's common log lines: scope entry and exit, failed assertions, and errors that are reported to
// the page. They are written to the main buffer of the platform log under the tag "CORVI_PLUGINS".
#ifndef CORVIS_COMMON_LOGGER_H_
#define CORVIS_COMMON_LOGGER_H_

#include <cstddef>
#include <string>

#include "nurvo/log.h"

namespace common {

constexpr int kMainLog = 0;
// The platform's priorities, repeated because a platform's headers need to declare functions only.
constexpr int kLogDebug = 3;
constexpr int kLogInfo = 4;
constexpr int kLogError = 6;
constexpr const char* kCommonLogTag = "CORVI_PLUGINS";

// Whether lines are written at all. To measure the cost of log calls, a build with CORVIS_WITHOUT_LOGS omits
// them, except for the copies in scopes and the lines of failed assertions.
#ifdef CORVIS_WITHOUT_LOGS
constexpr bool kHasLogs = false;
#else
constexpr bool kHasLogs = true;
#endif

// The base name of a source file, without folder and extension, computed at compile time from __FILE__.
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

// Writes the entry line of an operation on construction and the exit line on destruction, however the
// operation ends. Never throws: without memory, the exit line has the first letters of the names.
class ScopeLogger {
 public:
  ScopeLogger(const char* file, const char* function, int line) noexcept;
  ~ScopeLogger();
  ScopeLogger(const ScopeLogger&) = delete;
  ScopeLogger& operator=(const ScopeLogger&) = delete;

 private:
  // Copies, so that the exit line is correct even if the caller changes its texts in between.
  std::string file_;
  std::string function_;
};

// The source location of a common log line.
struct SourcePlace {
  const char* file;      // base name
  const char* path;      // full path, for the standard assertion
  const char* function;  // undecorated name
  const char* signature;
  int line;
};

// Writes the assertion line and aborts the process with the standard assertion failure, which prints
// `expression`. `message` may be empty.
[[noreturn]] void FailAssertion(const SourcePlace& place, const char* condition, const char* message,
                                const char* expression);

}  // namespace common

// The base name of the current source file. The text is valid as long as the process.
#define CORVIS_FILE                                       \
  ([] {                                                   \
    static constexpr ::common::SourceName name(__FILE__); \
    return static_cast<const char*>(name.text);           \
  }())

// The first statement of an operation whose entry and exit are logged.
#define CORVIS_LOG_SCOPE() CORVIS_LOG_SCOPE_OF(__func__)
// Like CORVIS_LOG_SCOPE, for an operation that is logged under a name other than its own.
#define CORVIS_LOG_SCOPE_OF(function) \
  const ::common::ScopeLogger scope_logger(CORVIS_FILE, function, __LINE__)

// Calls a function of the platform's log. All log calls use this macro, so that builds without logs don't
// evaluate their arguments.
#define CORVIS_LOG_CALL(call) \
  do {                        \
    if (::common::kHasLogs) { \
      call;                   \
    }                         \
  } while (false)

// Writes one common line at error priority. `text` is a literal without conversions.
#define CORVIS_LOG_ERROR_OF(function, text)                                                      \
  CORVIS_LOG_CALL(log_print_to(::common::kMainLog, ::common::kLogError, ::common::kCommonLogTag, \
                               "%s: %s(%d) > " text, CORVIS_FILE, function, __LINE__))

// Precedes every error that is reported to the page.
#define CORVIS_LOG_REPORTING_ERROR() CORVIS_LOG_ERROR_OF(__func__, "Reporting error.")

// Aborts the process unless `condition` holds, in every kind of build. `message` is a string literal.
#define CORVIS_ASSERT(condition, message)                                                                   \
  do {                                                                                                      \
    if (!(condition)) {                                                                                     \
      ::common::FailAssertion({CORVIS_FILE, __FILE__, __func__, __PRETTY_FUNCTION__, __LINE__}, #condition, \
                              message, "!!(" #condition ") && " #message);                                  \
    }                                                                                                       \
  } while (false)

#endif  // CORVIS_COMMON_LOGGER_H_
