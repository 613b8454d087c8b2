// Sentences that several reports have in common.
#ifndef CORVIS_KIT_REPORT_WORDING_H_
#define CORVIS_KIT_REPORT_WORDING_H_

#include <string>

#include "events/events.h"

namespace corvis::kit {

// Why a step failed, with what was expected and what came.
std::string Describe(const Failure& failure);

// In several lines.
std::string Describe(const CoverageMeasured& coverage);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_REPORT_WORDING_H_
