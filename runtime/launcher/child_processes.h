// The child processes of this process, including those of the web engine.
#ifndef CORVIS_RUNTIME_LAUNCHER_CHILD_PROCESSES_H_
#define CORVIS_RUNTIME_LAUNCHER_CHILD_PROCESSES_H_

#include <sys/types.h>

#include <chrono>

namespace corvis::tv {

// Waits until a child has ended, and reaps it. Returns false after `time`.
bool AwaitChild(pid_t child, std::chrono::milliseconds time);

// Kills stopped children. The engine's other processes end by themselves when this process ends.
void KillStoppedChildren();

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_LAUNCHER_CHILD_PROCESSES_H_
