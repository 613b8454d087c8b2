// Measures the peak memory use while an answer is split and sent, as a multiple of the answer's size,
// including the answer itself:
//   bench_answer_memory BYTES
#include <cstdio>
#include <cstdlib>
#include <string>

#include "voice-interaction/voice_interaction_channel.h"

namespace {

// The peak resident set of this program. getrusage() can't be used: its peak includes the parent's memory
// from before exec.
double PeakBytes() {
  long kibibytes = 0;
  char line[256];
  std::FILE* const file = std::fopen("/proc/self/status", "r");
  if (file == nullptr) std::abort();
  while (kibibytes == 0 && std::fgets(line, sizeof(line), file) != nullptr) {
    if (std::sscanf(line, "VmHWM: %ld", &kibibytes) != 1) kibibytes = 0;
  }
  std::fclose(file);
  constexpr double kKibibyte = 1024;
  return static_cast<double>(kibibytes) * kKibibyte;
}

}  // namespace

int main(int count, char** arguments) {
  const size_t size = count == 2 ? std::strtoul(arguments[1], nullptr, 10) : 0;
  if (size == 0) {
    std::fputs("Usage: bench_answer_memory BYTES\n", stderr);
    return 2;
  }
  using extension::voice_interaction::VoiceInteractionChannel;
  VoiceInteractionChannel::Init([](const std::string&, const std::string&, void*) {}, "com.example.bench",
                                "1.0.8", nullptr);
  // Warm-up with an answer of a few pieces, so that the code is in memory.
  constexpr size_t kSmall = 65536;
  VoiceInteractionChannel::Send("result", std::string(kSmall, 'a'));
  const double before = PeakBytes();
  VoiceInteractionChannel::Send("result", std::string(size, 'a'));
  std::printf("%.3f\n", (PeakBytes() - before) / static_cast<double>(size));
  return 0;
}
