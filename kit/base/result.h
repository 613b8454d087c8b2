// The one way in which the kit says that something failed.
#ifndef CORVIS_KIT_BASE_RESULT_H_
#define CORVIS_KIT_BASE_RESULT_H_

#include <string>
#include <tl/expected.hpp>
#include <utility>

namespace corvis::kit {

// What kind of failure it is, for whoever ends a run because of it. The process's exit status follows from
// it.
enum class ErrorKind {
  kFailed,         // anything else
  kUsage,          // wrong usage, or input with mistakes: nothing was started
  kNoApplication,  // the page can't be loaded, or never listened
  kCrashing,       // the page's process keeps crashing
  kNoEnvironment,  // no bus, no display, a missing program, no folder for the run
  kClosed,         // the application ended by itself: its page or its window was closed
  kTimeOver,       // the time for the whole run is over
  kInterrupted,    // a signal came
};

// A sentence for people: what was expected and what came, then what to do next.
struct Error {
  std::string message;
  ErrorKind kind = ErrorKind::kFailed;
};

// A value, or the error that kept it from being made. A result that nobody looks at doesn't compile.
template <typename T>
class [[nodiscard]] Result : public tl::expected<T, Error> {
 public:
  using tl::expected<T, Error>::expected;
};

// Success, or an error.
using Status = Result<void>;

// return Fail("The file x can't be read.");
inline tl::unexpected<Error> Fail(std::string message, ErrorKind kind = ErrorKind::kFailed) {
  return tl::make_unexpected(Error{std::move(message), kind});
}
inline tl::unexpected<Error> Fail(Error error) {
  return tl::make_unexpected(std::move(error));
}

}  // namespace corvis::kit

#endif  // CORVIS_KIT_BASE_RESULT_H_
