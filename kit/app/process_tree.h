// The processes below this one: finding them, telling them to end, ending them.
#ifndef CORVIS_KIT_APP_PROCESS_TREE_H_
#define CORVIS_KIT_APP_PROCESS_TREE_H_

#include <sys/types.h>

#include <chrono>
#include <string>
#include <vector>

namespace corvis::kit {

// From now on a process whose parent ends comes to this process, instead of leaving the tree below it.
void AdoptOrphans();

// All processes below this one.
std::vector<pid_t> Descendants();

// Tells a process to end, also one that is stopped.
void TellToEnd(pid_t process);

// Waits until `process`, a child, has ended. False when it has not within the time.
bool WaitForChild(pid_t process, std::chrono::milliseconds time, int* wait_status = nullptr);

// Tells all descendants to end, and kills those that have not within the grace. None is left afterwards,
// unless the kernel holds on to one for a second longer.
void EndDescendants(std::chrono::milliseconds grace);

// "ended with status 3", "was ended by signal 9 (Killed)".
std::string HowItEnded(int wait_status);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_APP_PROCESS_TREE_H_
