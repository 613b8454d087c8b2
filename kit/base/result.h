// The kit's error type, and results that carry either a value or an error.
#ifndef CORVIS_KIT_BASE_RESULT_H_
#define CORVIS_KIT_BASE_RESULT_H_

#include <string>
#include <tl/expected.hpp>
#include <utility>

namespace corvis::kit {

// The kind of a failure, which determines the exit status if the failure ends the run.
enum class ErrorKind {
  kFailed,         // anything else
  kUsage,          // wrong usage or invalid input; nothing was started
  kNoApplication,  // the page can't be loaded, or never listened
  kCrashing,       // the page's process keeps crashing
  kNoEnvironment,  // no bus, no display, a missing program, no folder for the run
  kClosed,         // the application ended by itself: its page or its window was closed
  kTimeOver,       // the time limit of the whole run is over
  kInterrupted,    // a signal was received
};

// An error message for users: what was expected, what was found, and what to do next.
struct Error {
  std::string message;
  ErrorKind kind = ErrorKind::kFailed;
};

// A value, or an error. Ignoring a result is a compile error.
template <typename T>
class [[nodiscard]] Result : public tl::expected<T, Error> {
 public:
  using tl::expected<T, Error>::expected;
};

// Success, or an error.
using Status = Result<void>;

// Makes an error to return: return Fail("The file x can't be read.");
inline tl::unexpected<Error> Fail(std::string message, ErrorKind kind = ErrorKind::kFailed) {
  return tl::make_unexpected(Error{std::move(message), kind});
}
inline tl::unexpected<Error> Fail(Error error) {
  return tl::make_unexpected(std::move(error));
}

}  // namespace corvis::kit

#endif  // CORVIS_KIT_BASE_RESULT_H_
