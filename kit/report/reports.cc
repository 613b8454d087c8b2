// The table of formats.
#include "report/reports.h"

#include <algorithm>
#include <cassert>

namespace corvis::kit {

const std::vector<ReportFormat>& ReportFormats() {
  using Target = ReportFormat::Target;
  static const std::vector<ReportFormat> kFormats = {
      {"tap", "TAP 14, a line for each step", Target::kStandardOutput, MakeTapReport},
      {"json", "JSON events, one a line", Target::kStandardOutput, MakeJsonReport},
      {"narrate", "a table for people", Target::kStandardOutput, MakeTableReport},
      {"junit", "a JUnit report", Target::kFile, MakeJUnitReport},
  };
  return kFormats;
}

const ReportFormat& FindReportFormat(std::string_view name) {
  const auto found = std::find_if(ReportFormats().begin(), ReportFormats().end(),
                                  [name](const ReportFormat& format) { return format.name == name; });
  assert(found != ReportFormats().end());
  return *found;
}

}  // namespace corvis::kit
