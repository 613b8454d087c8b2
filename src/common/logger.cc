// Scope lines and assertion lines.
#include "common/logger.h"

// The assertion must also end a release build.
#undef NDEBUG
#include <assert.h>

namespace common {

ScopeLogger::ScopeLogger(const char* file, const char* function, int line) {
  log_print_to(kMainLog, kLogDebug, kCommonLogTag, "logger: ScopeLogger > %s: %s(%d) > Enter ", file,
               function, line);
  file_ = file;
  function_ = function;
}

ScopeLogger::~ScopeLogger() {
  log_print_to(kMainLog, kLogDebug, kCommonLogTag, "%s: %s(%d) > %s: %s > Exit", CORVIS_FILE, __func__,
               __LINE__, file_.c_str(), function_.c_str());
}

void FailAssertion(const SourcePlace& place, const char* condition, const char* message,
                   const char* expression) {
  const std::string suffix = *message == '\0' ? "" : std::string(", message: ") + message;
  log_print_to(kMainLog, kLogError, kCommonLogTag, "%s: %s(%d) > assert(%s)%s", place.file, place.function,
               place.line, condition, suffix.c_str());
  __assert_fail(expression, place.path, static_cast<unsigned>(place.line), place.signature);
}

}  // namespace common
