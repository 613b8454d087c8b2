// Replaces operator new and, since the memory comes from malloc, operator delete.
#include "failing_memory.h"

#include <cstdlib>
#include <new>

#include "testing/fake/code_scope.h"

namespace failing_memory {

namespace {

struct Plan {
  int first = 0;
  int last = 0;
  int count = 0;
};

Plan& Current() {
  static Plan plan;
  return plan;
}

void* Allocate(size_t size) noexcept {
  if (fake::RunsLibraryCode()) {
    Plan& plan = Current();
    ++plan.count;
    if (plan.count >= plan.first && plan.count <= plan.last) return nullptr;
  }
  return std::malloc(size == 0 ? 1 : size);
}

}  // namespace

void FailAllocations(int first, int last) {
  Current() = {first, last, 0};
}

int Allocations() {
  return Current().count;
}

}  // namespace failing_memory

void* operator new(size_t size) {
  if (void* const memory = failing_memory::Allocate(size)) return memory;
  throw std::bad_alloc();
}

void* operator new(size_t size, const std::nothrow_t& /*unused*/) noexcept {
  return failing_memory::Allocate(size);
}

void operator delete(void* memory) noexcept {
  std::free(memory);
}

void operator delete(void* memory, size_t /*size*/) noexcept {
  std::free(memory);
}
