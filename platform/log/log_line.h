// What a log line looks like, and from which priority on lines are written.
#ifndef NURVO_PLATFORM_LOG_LOG_LINE_H_
#define NURVO_PLATFORM_LOG_LOG_LINE_H_

#include <cstdarg>
#include <ctime>
#include <string>

namespace nurvo {

// A threshold above every priority.
constexpr int kSilent = 8;

// The priority that the letter in `name` means (V D I W E F, or S for silent); -1 for any other text.
int ThresholdOf(const char* name);

// "HH:MM:SS.mmm P tag: message" and a line feed, with the local time `now`. Line feeds inside the message are
// written as \n, so that a call is a line.
std::string LogLine(const timespec& now, int priority, const char* tag, const char* format,
                    va_list arguments);

}  // namespace nurvo

#endif  // NURVO_PLATFORM_LOG_LOG_LINE_H_
