// The result of a step.
#ifndef CORVIS_KIT_SCRIPT_VERDICT_H_
#define CORVIS_KIT_SCRIPT_VERDICT_H_

#include <string>
#include <tl/expected.hpp>

#include "base/result.h"
#include "events/events.h"

namespace corvis::kit {

struct Matcher;

// Success, or the reason why the step failed.
class [[nodiscard]] Verdict : public tl::expected<void, Failure> {
 public:
  using tl::expected<void, Failure>::expected;
  // NOLINTNEXTLINE(google-explicit-constructor): the failure of an operation is the failure of its step.
  Verdict(const Status& status);
};

Verdict Failed(std::string message);

// The verdict on a comparison; `expected` and `actual` are shown if it does not hold.
Verdict Compared(bool holds, std::string expected, const std::string& actual);
Verdict Compared(const Matcher& matcher, const std::string& actual);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_SCRIPT_VERDICT_H_
