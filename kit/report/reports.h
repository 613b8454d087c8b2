// The formats in which a run can be reported. A new one is a file in this folder, a function here, and a line
// in the table of reports.cc.
#ifndef CORVIS_KIT_REPORT_REPORTS_H_
#define CORVIS_KIT_REPORT_REPORTS_H_

#include <memory>
#include <string_view>
#include <vector>

#include "base/result.h"
#include "events/events.h"
#include "output/output_file.h"

namespace corvis::kit {

// Made from events alone.
class Report : public EventSink {
 public:
  // Once, after the last event: whether the whole report was written.
  virtual Status Finish() = 0;
};

struct ReportFormat {
  // Where a report of this format goes: the standard output, of which there is one, or a file that is asked
  // for.
  enum class Target { kStandardOutput, kFile };

  // The command line's option, without its hyphens.
  const char* name;
  // For the option's help.
  const char* help;
  Target target;
  std::unique_ptr<Report> (*make)(OutputFile output);
};

const std::vector<ReportFormat>& ReportFormats();

// The format with this name, which must be in the table.
const ReportFormat& FindReportFormat(std::string_view name);

// Each in the file of its name.
std::unique_ptr<Report> MakeTableReport(OutputFile output);
std::unique_ptr<Report> MakeTapReport(OutputFile output);
std::unique_ptr<Report> MakeJsonReport(OutputFile output);
std::unique_ptr<Report> MakeJUnitReport(OutputFile output);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_REPORT_REPORTS_H_
