// The keeper: a small process that owns the other processes of a run and its folder, and outlives whoever
// started the run by as long as it takes to end them.
#ifndef CORVIS_KIT_APP_KEEPER_H_
#define CORVIS_KIT_APP_KEEPER_H_

#include <string>
#include <vector>

namespace corvis::kit {

// What a keeper is to start.
struct KeeperTask {
  // Where the run's folder is made.
  std::string parent_folder;
  // The runtime and its arguments.
  std::vector<std::string> runtime;
  // Takes what the runtime prints.
  int runtime_output = -1;
};

// What a keeper reports, each in a packet of its own: this byte, then a text.
enum KeeperReport : char {
  // Everything is started. The text is the run's folder.
  kReportStarted = 'S',
  // Nothing was started, and the keeper has ended. The text is a sentence.
  kReportProblem = 'P',
  // The runtime has ended, or the bus. The text is its wait status in decimal; after a space, what the bus
  // said.
  kReportRuntimeEnded = 'R',
  kReportBusEnded = 'B',
};

// The longest report, the byte included.
constexpr size_t kReportSize = 8192;

// The name of the bus's socket in the run's folder.
constexpr const char* kBusSocket = "/bus";

// Becomes the keeper: starts the bus and the runtime, reports through `channel` (a sequenced-packet socket),
// and when the other end is shut down or gone ends every process below itself (after a grace) and removes the
// folder. For a fresh child of a fork.
[[noreturn]] void Keep(const KeeperTask& task, int channel);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_APP_KEEPER_H_
