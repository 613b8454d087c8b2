// Measures this process and prints figures.
#ifndef CORVIS_BENCH_NUMBERS_H_
#define CORVIS_BENCH_NUMBERS_H_

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <utility>
#include <vector>

namespace bench {

inline double Microseconds(clockid_t clock) {
  timespec now{};
  clock_gettime(clock, &now);
  constexpr double kMicrosecondsPerSecond = 1e6;
  constexpr double kNanosecondsPerMicrosecond = 1e3;
  return static_cast<double>(now.tv_sec) * kMicrosecondsPerSecond +
         static_cast<double>(now.tv_nsec) / kNanosecondsPerMicrosecond;
}

// The resident memory of this process in bytes.
inline long ResidentBytes() {
  long size = 0;
  long resident = 0;
  std::FILE* const file = std::fopen("/proc/self/statm", "r");
  if (file == nullptr || std::fscanf(file, "%ld %ld", &size, &resident) != 2) std::abort();
  std::fclose(file);
  return resident * sysconf(_SC_PAGESIZE);
}

// Prints a JSON object of lists as one line.
inline void PrintJson(const std::vector<std::pair<const char*, std::vector<double>>>& lists) {
  const char* before_list = "{";
  for (const auto& [name, numbers] : lists) {
    std::printf("%s\"%s\":[", std::exchange(before_list, ","), name);
    const char* before_number = "";
    for (const double number : numbers) std::printf("%s%.1f", std::exchange(before_number, ","), number);
    std::printf("]");
  }
  std::printf("}\n");
}

}  // namespace bench

#endif  // CORVIS_BENCH_NUMBERS_H_
