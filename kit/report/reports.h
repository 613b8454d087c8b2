// The report formats. To add one, write a file in this folder, declare its function here and add a line to
// the table in reports.cc.
#ifndef CORVIS_KIT_REPORT_REPORTS_H_
#define CORVIS_KIT_REPORT_REPORTS_H_

#include <memory>
#include <string_view>
#include <vector>

#include "base/result.h"
#include "events/events.h"
#include "output/output_file.h"

namespace corvis::kit {

// A report receives events and depends on nothing else.
class Report : public EventSink {
 public:
  // Call once, after the last event. Returns an error unless the whole report was written.
  virtual Status Finish() = 0;
};

struct ReportFormat {
  // The destination of the report: standard output, which only one report can use, or a file.
  enum class Target { kStandardOutput, kFile };

  // The name of the command-line option, without its hyphens.
  const char* name;
  // The help text of the option.
  const char* help;
  Target target;
  std::unique_ptr<Report> (*make)(OutputFile output);
  // Whether the report needs the events about the page: views, requests, console lines.
  bool needs_page = false;
};

const std::vector<ReportFormat>& ReportFormats();

// The format with this name. Requires that it is in the table.
const ReportFormat& FindReportFormat(std::string_view name);

// Each is defined in the file named like its format.
std::unique_ptr<Report> MakeTableReport(OutputFile output);
std::unique_ptr<Report> MakePeopleReport(OutputFile output);
std::unique_ptr<Report> MakeTapReport(OutputFile output);
std::unique_ptr<Report> MakeJsonReport(OutputFile output);
std::unique_ptr<Report> MakeDetailedJsonReport(OutputFile output);
std::unique_ptr<Report> MakeHtmlReport(OutputFile output);
std::unique_ptr<Report> MakeJUnitReport(OutputFile output);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_REPORT_REPORTS_H_
