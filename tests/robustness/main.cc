// robustness_programs PROGRAM [--short]: runs one of the programs on the bus of the environment. Prints a
// line of figures; status 1 and one sentence when something did not hold.
#include <cstdio>
#include <cstring>

#include "robustness/stage.h"

int main(int argc, char** argv) {
  constexpr struct {
    const char* name;
    void (*run)(bool is_short);
  } kPrograms[] = {{"load", robustness::RunLoad},
                   {"hostile-peers", robustness::RunHostilePeers},
                   {"web-process-crashes", robustness::RunWebProcessCrashes},
                   {"departures", robustness::RunDepartures}};
  const bool is_short = argc > 2 && std::strcmp(argv[2], "--short") == 0;
  for (const auto& program : kPrograms) {
    if (argc < 2 || std::strcmp(argv[1], program.name) != 0) continue;
    try {
      std::printf("%s: ", program.name);
      std::fflush(stdout);
      program.run(is_short);
      return 0;
    } catch (const std::exception& failure) {
      std::printf("FAILED: %s\n", failure.what());
      return 1;
    }
  }
  std::fprintf(stderr,
               "Usage: robustness_programs load|hostile-peers|web-process-crashes|departures [--short]\n");
  return 2;
}
