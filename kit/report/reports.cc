// The table of report formats.
#include "report/reports.h"

#include <algorithm>
#include <cassert>

namespace corvis::kit {

const std::vector<ReportFormat>& ReportFormats() {
  using Target = ReportFormat::Target;
  static const std::vector<ReportFormat> kFormats = {
      {"tap", "print TAP 14, one line per step (default elsewhere)", Target::kStandardOutput, MakeTapReport},
      {"people", "print a report for people (default on a terminal)", Target::kStandardOutput,
       MakePeopleReport},
      {"json", "print JSON events, one per line", Target::kStandardOutput, MakeJsonReport},
      {"json-details", "print JSON events, with what the page showed and wrote", Target::kStandardOutput,
       MakeDetailedJsonReport, true},
      {"narrate", "print a table for people", Target::kStandardOutput, MakeTableReport},
      {"junit", "write a JUnit report", Target::kFile, MakeJUnitReport},
      {"html", "write a report for a browser, with pictures of each step", Target::kFile, MakeHtmlReport,
       true},
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
