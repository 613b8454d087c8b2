// robustness_programs PROGRAM [--short]: runs one of the programs on the bus of the environment. Prints a
// line of figures; status 1 and one sentence when something did not hold.
#include "robustness/stage.h"

int main(int argc, char** argv) {
  constexpr struct {
    const char* name;
    void (*run)(bool is_short);
  } kPrograms[] = {{"load", robustness::RunLoad},
                   {"hostile-peers", robustness::RunHostilePeers},
                   {"web-process-crashes", robustness::RunWebProcessCrashes},
                   {"departures", robustness::RunDepartures}};
  const std::string name = argc > 1 ? argv[1] : "";
  const bool is_short = argc > 2 && std::string(argv[2]) == "--short";
  for (const auto& program : kPrograms) {
    if (name != program.name) continue;
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
  std::fprintf(stderr, "Usage: robustness_programs PROGRAM [--short]\n");
  return 2;
}
