// Finds and ends the descendants of this process.
#ifndef CORVIS_KIT_APP_PROCESS_TREE_H_
#define CORVIS_KIT_APP_PROCESS_TREE_H_

#include <sys/types.h>

#include <chrono>
#include <string>
#include <vector>

namespace corvis::kit {

// Makes this process the reaper of its orphaned descendants, so that none leaves the tree below it.
void AdoptOrphans();

// The ids of all descendants.
std::vector<pid_t> Descendants();

// Sends SIGTERM, and SIGCONT so that a stopped process handles it.
void TellToEnd(pid_t process);

// Waits until the child `process` has ended and reaps it. Returns false after `time`.
bool WaitForChild(pid_t process, std::chrono::milliseconds time, int* wait_status = nullptr);

// Asks all descendants to end and kills those that are left after `grace`. None is left afterwards, unless
// the kernel keeps one for more than another second.
void EndDescendants(std::chrono::milliseconds grace);

// "ended with status 3", "was ended by signal 9 (Killed)".
std::string HowItEnded(int wait_status);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_APP_PROCESS_TREE_H_
