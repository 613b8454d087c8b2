// The keeper: a small process that owns the other processes of a run and the run's folder. If the program
// that started the run dies, the keeper ends them and removes the folder.
#ifndef CORVIS_KIT_APP_KEEPER_H_
#define CORVIS_KIT_APP_KEEPER_H_

#include <string>

#include "app/stage.h"

namespace corvis::kit {

// The keeper's parameters.
struct KeeperTask {
  // The folder in which the run's folder is created.
  std::string parent_folder;
  StageCommands commands;
  // Descriptors for the standard output and error of the runtime and of the application's server.
  int runtime_output = -1;
  int server_output = -1;
};

// The keeper's reports. Each is one packet: this byte, then a text.
enum KeeperReport : char {
  // All processes are started. The text is the run's folder.
  kReportStarted = 'S',
  // Starting failed, and the keeper ends. The text is an error message.
  kReportProblem = 'P',
  // The runtime, the application's server or the bus has ended. The text is its wait status in decimal; for
  // the bus, a space and the last line of its output follow.
  kReportRuntimeEnded = 'R',
  kReportServerEnded = 'V',
  kReportBusEnded = 'B',
};

// The one request to a keeper, a packet of this byte: start the runtime, after ending what is left of the
// last one. Answered with kReportStarted.
constexpr char kRequestRuntime = 'A';

// The largest packet, in bytes.
constexpr size_t kReportSize = 8192;

// The name of the bus's socket in the run's folder.
constexpr const char* kBusSocket = "/bus";

// Runs the keeper in a newly forked child: starts the bus and the runtime and reports through `channel`, a
// sequenced-packet socket. When the other end shuts down or closes, ends all descendants (with a grace
// period) and removes the folder.
[[noreturn]] void Keep(const KeeperTask& task, int channel);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_APP_KEEPER_H_
