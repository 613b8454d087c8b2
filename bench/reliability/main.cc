// corvis_reliability PROGRAM [--short]: runs one of the programs on the bus of the environment. Prints a line
// of figures; status 1 and one sentence when something did not hold.
#include <cstdio>
#include <cstring>

#include "reliability/stage.h"

int main(int argc, char** argv) {
  constexpr struct {
    const char* name;
    void (*run)(bool is_short);
  } kPrograms[] = {{"load", reliability::RunLoad},
                   {"hostile-peers", reliability::RunHostilePeers},
                   {"web-process-crashes", reliability::RunWebProcessCrashes},
                   {"departures", reliability::RunDepartures}};
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
               "Usage: corvis_reliability load|hostile-peers|web-process-crashes|departures [--short]\n");
  return 2;
}
