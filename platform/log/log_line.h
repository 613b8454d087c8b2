// The format of log lines, and the threshold priority.
#ifndef NURVO_PLATFORM_LOG_LOG_LINE_H_
#define NURVO_PLATFORM_LOG_LOG_LINE_H_

#include <cstdarg>
#include <ctime>
#include <string>

namespace nurvo {

// A threshold above every priority.
constexpr int kSilent = 8;

// The priority for the letter in `name` (V D I W E F, or S for silent); -1 for any other text.
int ThresholdOf(const char* name);

// Returns "HH:MM:SS.mmm P tag: message" and a line feed, with `now` in local time. Line feeds inside the
// message become \n, so that each call writes one line.
std::string LogLine(const timespec& now, int priority, const char* tag, const char* format,
                    va_list arguments);

}  // namespace nurvo

#endif  // NURVO_PLATFORM_LOG_LOG_LINE_H_
