// Makes allocations of the library fail: a replacement of the program's operator new, which asks whose code
// runs.
#ifndef CORVIS_TESTS_FAILING_MEMORY_H_
#define CORVIS_TESTS_FAILING_MEMORY_H_

#include <climits>

namespace failing_memory {

// Makes the library's allocations from the `first` to the `last` fail, counted from now on, 1 being the next.
// They are counted in any case.
void FailAllocations(int first, int last);
inline void FailNothing() {
  FailAllocations(0, 0);
}
// The number of allocations since the last call of FailAllocations.
int Allocations();

}  // namespace failing_memory

#endif  // CORVIS_TESTS_FAILING_MEMORY_H_
