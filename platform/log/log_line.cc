// Formats log lines.
#include "log/log_line.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <string_view>

#include "nurvo/log.h"

namespace nurvo {

namespace {

// One letter per priority, starting with NURVO_LOG_VERBOSE.
constexpr std::string_view kLetters = "VDIWEFS";

char LetterOf(int priority) {
  const auto index = static_cast<size_t>(priority - NURVO_LOG_VERBOSE);
  return index < kLetters.size() ? kLetters[index] : '?';
}

void AppendTime(std::string& line, const timespec& now) {
  constexpr int kNanosecondsPerMillisecond = 1000000;
  tm local{};
  localtime_r(&now.tv_sec, &local);
  char text[64];
  std::snprintf(text, sizeof(text), "%02d:%02d:%02d.%03d", local.tm_hour, local.tm_min, local.tm_sec,
                static_cast<int>(now.tv_nsec / kNanosecondsPerMillisecond));
  line += text;
}

// Formats directly into the line: first into a buffer that is large enough for most messages, then with the
// exact size.
void AppendFormatted(std::string& line, const char* format, va_list arguments) {
  constexpr size_t kUsualSize = 512;
  va_list again;
  va_copy(again, arguments);
  const size_t start = line.size();
  line.resize(start + kUsualSize);
  const int length = std::vsnprintf(&line[start], kUsualSize, format, arguments);
  if (length >= 0 && static_cast<size_t>(length) >= kUsualSize) {
    line.resize(start + static_cast<size_t>(length) + 1);
    std::vsnprintf(&line[start], static_cast<size_t>(length) + 1, format, again);
  }
  va_end(again);
  line.resize(start + (length > 0 ? static_cast<size_t>(length) : 0));
}

// Moves every character once, from the back, however many line feeds there are.
void EscapeLineFeeds(std::string& line, size_t from) {
  size_t read = line.size();
  size_t write =
      read + static_cast<size_t>(std::count(line.begin() + static_cast<ptrdiff_t>(from), line.end(), '\n'));
  line.resize(write);
  while (read < write) {
    const char c = line[--read];
    line[--write] = c == '\n' ? 'n' : c;
    if (c == '\n') line[--write] = '\\';
  }
}

}  // namespace

int ThresholdOf(const char* name) {
  const std::string_view text(name);
  const size_t index = text.size() == 1 ? kLetters.find(text[0]) : std::string_view::npos;
  return index == std::string_view::npos ? -1 : NURVO_LOG_VERBOSE + static_cast<int>(index);
}

std::string LogLine(const timespec& now, int priority, const char* tag, const char* format,
                    va_list arguments) {
  std::string line;
  AppendTime(line, now);
  line.append({' ', LetterOf(priority), ' '}).append(tag).append(": ");
  const size_t message = line.size();
  AppendFormatted(line, format, arguments);
  EscapeLineFeeds(line, message);
  return line += '\n';
}

}  // namespace nurvo
