// Reports a run as events for programs, one JSON object per line.
#include <nlohmann/json.hpp>
#include <utility>

#include "output/text_forms.h"
#include "report/json_forms.h"
#include "report/reports.h"

namespace corvis::kit {

namespace {

class JsonReport : public Report {
 public:
  explicit JsonReport(OutputFile output) : output_(std::move(output)) {}

  void Take(const Event& event) override { output_.Write(JsonLine(JsonFormOf(event)) + "\n"); }
  Status Finish() override { return output_.Finish(); }

 private:
  OutputFile output_;
};

}  // namespace

std::unique_ptr<Report> MakeJsonReport(OutputFile output) {
  return std::make_unique<JsonReport>(std::move(output));
}

}  // namespace corvis::kit
