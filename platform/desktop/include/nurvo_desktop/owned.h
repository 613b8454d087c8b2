// Owning pointers to C objects, which release them with a function of the C library.
#ifndef NURVO_DESKTOP_OWNED_H_
#define NURVO_DESKTOP_OWNED_H_

#include <cstdlib>
#include <memory>

namespace nurvo {

template <auto release>
struct ReleasedBy {
  template <typename T>
  void operator()(T* object) const {
    release(object);
  }
};
template <typename T, auto release>
using Owned = std::unique_ptr<T, ReleasedBy<release>>;

// Memory that a C interface allocated for its caller.
template <typename T>
using MallocPtr = Owned<T, std::free>;

}  // namespace nurvo

#endif  // NURVO_DESKTOP_OWNED_H_
