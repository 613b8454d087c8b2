// What became of a step.
#ifndef CORVIS_KIT_SCRIPT_VERDICT_H_
#define CORVIS_KIT_SCRIPT_VERDICT_H_

#include <string>
#include <tl/expected.hpp>

#include "base/result.h"
#include "events/events.h"

namespace corvis::kit {

struct Matcher;

// Nothing when the step passed; otherwise why it failed.
class [[nodiscard]] Verdict : public tl::expected<void, Failure> {
 public:
  using tl::expected<void, Failure>::expected;
  // NOLINTNEXTLINE(google-explicit-constructor): an operation that failed is a step that failed.
  Verdict(const Status& status);
};

Verdict Failed(std::string message);

// Of a comparison; `expected` and `actual` are shown when it doesn't hold.
Verdict Compared(bool holds, std::string expected, const std::string& actual);
Verdict Compared(const Matcher& matcher, const std::string& actual);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_SCRIPT_VERDICT_H_
