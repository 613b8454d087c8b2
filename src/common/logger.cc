// Writes scope lines and assertion lines.
#include "common/logger.h"

// Assertions must also abort release builds.
#undef NDEBUG
#include <assert.h>

#include <algorithm>
#include <cstring>
#include <exception>

namespace common {

namespace {

// Writes the entry line and returns `file`, so that the line is written before the members are copied.
const char* LogEntry(const char* file, const char* function, int line) {
  CORVIS_LOG_CALL(log_print_to(kMainLog, kLogDebug, kCommonLogTag,
                               "logger: ScopeLogger > %s: %s(%d) > Enter ", file, function, line));
  return file;
}

// A copy of `name`; without memory, of as much as a string holds without allocating.
std::string CopyName(const char* name) noexcept {
  try {
    return name;
  } catch (const std::exception&) {
    return {name, std::min(std::strlen(name), std::string().capacity())};
  }
}

}  // namespace

ScopeLogger::ScopeLogger(const char* file, const char* function, int line) noexcept
    : file_(CopyName(LogEntry(file, function, line))), function_(CopyName(function)) {}

ScopeLogger::~ScopeLogger() {
  CORVIS_LOG_CALL(log_print_to(kMainLog, kLogDebug, kCommonLogTag, "%s: %s(%d) > %s: %s > Exit", CORVIS_FILE,
                               __func__, __LINE__, file_.c_str(), function_.c_str()));
}

void FailAssertion(const SourcePlace& place, const char* condition, const char* message,
                   const char* expression) {
  const std::string suffix = *message == '\0' ? "" : std::string(", message: ") + message;
  log_print_to(kMainLog, kLogError, kCommonLogTag, "%s: %s(%d) > assert(%s)%s", place.file, place.function,
               place.line, condition, suffix.c_str());
  __assert_fail(expression, place.path, static_cast<unsigned>(place.line), place.signature);
}

}  // namespace common
