// The processes that this one has started, by itself or by the web engine.
#ifndef CORVIS_RUNTIME_LAUNCHER_CHILD_PROCESSES_H_
#define CORVIS_RUNTIME_LAUNCHER_CHILD_PROCESSES_H_

#include <sys/types.h>

#include <chrono>

namespace corvis::tv {

// Waits until a child has ended, and takes its status. False when it has not within the time.
bool AwaitChild(pid_t child, std::chrono::milliseconds time);

// Kills the children that are stopped. The engine's others end by themselves when this process has ended.
void KillStoppedChildren();

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_LAUNCHER_CHILD_PROCESSES_H_
