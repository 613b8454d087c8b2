// The platform log on a desktop: lines on standard error. Silent unless NURVO_LOG sets a priority, because
// libraries also log ordinary events at error priority.
#include "nurvo/log.h"

#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdlib>

#include "log/log_line.h"
#include "support/c_interface.h"

namespace {

constexpr int kFailed = -1;
constexpr int kNotRead = INT_MIN;

// Writes the whole text, in one call unless the file accepts less.
int WriteAll(const char* text, size_t size) {
  size_t done = 0;
  while (done < size) {
    const ssize_t written = write(STDERR_FILENO, text + done, size - done);
    if (written < 0 && errno != EINTR) return kFailed;
    if (written > 0) done += static_cast<size_t>(written);
  }
  return static_cast<int>(size);
}

int ReadThreshold() {
  const char* const name = std::getenv("NURVO_LOG");
  if (name == nullptr || *name == '\0') return nurvo::kSilent;
  const int threshold = nurvo::ThresholdOf(name);
  if (threshold >= 0) return threshold;
  constexpr char kWarning[] = "NURVO_LOG must be one of V D I W E F S; nothing is logged.\n";
  WriteAll(kWarning, sizeof(kWarning) - 1);
  return nurvo::kSilent;
}

// The threshold, so that dropping a line costs one comparison. The first line initializes it from the
// environment; until then all lines pass.
int& Threshold() {
  static int threshold = kNotRead;
  return threshold;
}

bool isToPrint(int priority) {
  int& threshold = Threshold();
  if (threshold == kNotRead) threshold = ReadThreshold();
  return priority >= threshold;
}

__attribute__((format(printf, 3, 0))) int Print(int priority, const char* tag, const char* format,
                                                va_list arguments) {
  if (!isToPrint(priority)) return 0;
  if (format == nullptr) return kFailed;
  const int saved_errno = errno;
  const int result = nurvo::Guarded(kFailed, [&] {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    const std::string line = nurvo::LogLine(now, priority, tag == nullptr ? "" : tag, format, arguments);
    return WriteAll(line.data(), line.size());
  });
  errno = saved_errno;
  return result;
}

}  // namespace

NURVO_EXPORT int log_print(int priority, const char* tag, const char* format, ...) {
  if (priority < Threshold()) return 0;
  va_list arguments;
  va_start(arguments, format);
  const int result = Print(priority, tag, format, arguments);
  va_end(arguments);
  return result;
}

// On a desktop all buffers are standard error.
NURVO_EXPORT int log_print_to(int /*buffer_id*/, int priority, const char* tag, const char* format, ...) {
  if (priority < Threshold()) return 0;
  va_list arguments;
  va_start(arguments, format);
  const int result = Print(priority, tag, format, arguments);
  va_end(arguments);
  return result;
}
