// Texts that several reports share.
#ifndef CORVIS_KIT_REPORT_WORDING_H_
#define CORVIS_KIT_REPORT_WORDING_H_

#include <string>

#include "events/events.h"

namespace corvis::kit {

// Why a step failed: the message, the expected and the actual value.
std::string Describe(const Failure& failure);

// A summary of the coverage, in several lines.
std::string Describe(const CoverageMeasured& coverage);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_REPORT_WORDING_H_
