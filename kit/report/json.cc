// Reports a run as events for programs, one JSON object per line.
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <utility>
#include <variant>

#include "output/text_forms.h"
#include "report/json_forms.h"
#include "report/reports.h"

namespace corvis::kit {

namespace {

class JsonReport : public Report {
 public:
  explicit JsonReport(OutputFile output) : output_(std::move(output)) {}

  void Take(const Event& event) override {
    const bool is_detail =
        std::holds_alternative<PageSeen>(event) || std::holds_alternative<RequestMade>(event);
    if (!is_detail) Write(JsonFormOf(event));
  }
  Status Finish() override { return output_.Finish(); }

 protected:
  void Write(const nlohmann::ordered_json& form) { output_.Write(JsonLine(form) + "\n"); }

 private:
  OutputFile output_;
};

// The same with the events about the page. Each picture is written once.
class DetailedJsonReport : public JsonReport {
 public:
  using JsonReport::JsonReport;

  void Take(const Event& event) override {
    nlohmann::ordered_json form = JsonFormOf(event);
    const auto* seen = std::get_if<PageSeen>(&event);
    if (seen != nullptr && !pictures_.insert(seen->picture.id).second) form.erase("image");
    Write(form);
  }

 private:
  std::set<std::string> pictures_;
};

}  // namespace

std::unique_ptr<Report> MakeDetailedJsonReport(OutputFile output) {
  return std::make_unique<DetailedJsonReport>(std::move(output));
}

std::unique_ptr<Report> MakeJsonReport(OutputFile output) {
  return std::make_unique<JsonReport>(std::move(output));
}

}  // namespace corvis::kit
