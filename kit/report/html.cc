// Reports a run as one HTML file. It contains the events in their JSON form, the pictures of the page, and
// the viewer of kit/report/html, which draws them in a browser.
#include <fmt/format.h>
#include <glib.h>

#include <array>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <utility>

#include "frame_script.h"
#include "language/actions.h"
#include "output/text_forms.h"
#include "report/coverage.h"
#include "report/json_forms.h"
#include "report/reports.h"
#include "style_script.h"
#include "viewer_script.h"

namespace corvis::kit {

namespace {

using Json = nlohmann::ordered_json;

// JSON for a script element, which no text in it can end.
std::string ForScriptElement(const Json& value) {
  std::string escaped;
  for (const char c : JsonLine(value)) {
    if (c == '<') {
      escaped += "\\u003c";
    } else {
      escaped += c;
    }
  }
  return escaped;
}

// The text's hash, as a content security policy names it.
std::string PolicyHash(const std::string& text) {
  const std::unique_ptr<GChecksum, decltype(&g_checksum_free)> sum(g_checksum_new(G_CHECKSUM_SHA256),
                                                                   g_checksum_free);
  g_checksum_update(sum.get(), reinterpret_cast<const guchar*>(text.data()),
                    static_cast<gssize>(text.size()));
  constexpr gsize kSize = 32;
  std::array<guchar, kSize> digest{};
  gsize size = digest.size();
  g_checksum_get_digest(sum.get(), digest.data(), &size);
  const std::unique_ptr<char, decltype(&g_free)> base64(g_base64_encode(digest.data(), size), g_free);
  return std::string("'sha256-") + base64.get() + "'";
}

// Nothing but the report's own style and script has an effect, and nothing is loaded.
std::string Policy() {
  return fmt::format(
      "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; img-src data:; "
      "style-src {}; script-src {}\" />",
      PolicyHash(kReportStyle), PolicyHash(kReportViewer));
}

// All callbacks that an application can have, with their actions.
Json Callbacks() {
  Json callbacks = Json::array();
  for (const ActionInfo& info : Actions()) {
    if (!info.callback.empty()) callbacks.push_back({{"callback", info.callback}, {"action", info.name}});
  }
  return callbacks;
}

class HtmlReport : public Report {
 public:
  explicit HtmlReport(OutputFile output) : output_(std::move(output)) {}

  void Take(const Event& event) override {
    coverage_.Take(event);
    has_coverage_ = has_coverage_ || std::holds_alternative<CoverageMeasured>(event);
    if (std::holds_alternative<RunEnded>(event) && !has_coverage_) Add(JsonFormOf(coverage_.Measure()));
    Json form = JsonFormOf(event);
    const auto* seen = std::get_if<PageSeen>(&event);
    if (seen != nullptr && !seen->picture.url.empty()) pictures_[seen->picture.id] = seen->picture.url;
    form.erase("image");
    Add(form);
  }

  // Writes the document, which is complete only now.
  Status Finish() override {
    WriteFrame();
    return output_.Finish();
  }

 private:
  void Add(const Json& form) { events_ += (events_.empty() ? "" : ",\n") + ForScriptElement(form); }

  // The document's frame, with the parts that its comments name.
  void WriteFrame() {
    const std::string frame = kReportFrame;
    const std::string begin = "<!-- ";
    const std::string end = " -->";
    size_t at = 0;
    for (size_t open = 0; (open = frame.find(begin, at)) != std::string::npos;) {
      const size_t close = frame.find(end, open);
      output_.Write(frame.substr(at, open - at));
      WritePart(frame.substr(open + begin.size(), close - open - begin.size()));
      at = close + end.size();
    }
    output_.Write(frame.substr(at));
  }

  void WritePart(const std::string& name) {
    if (name == "policy") output_.Write(Policy());
    if (name == "style") output_.Write(fmt::format("<style>{}</style>", kReportStyle));
    if (name == "viewer") output_.Write(fmt::format("<script>{}</script>", kReportViewer));
    if (name == "data") WriteData();
  }

  void WriteData() {
    const auto write = [this](const char* id, const std::string& json) {
      output_.Write(fmt::format("<script type=\"application/json\" id=\"{}\">{}</script>\n", id, json));
    };
    write("callbacks", ForScriptElement(Callbacks()));
    write("events", "[" + events_ + "]");
    write("pictures", Pictures());
  }

  std::string Pictures() const {
    std::string members;
    for (const auto& [id, url] : pictures_) {
      members += members.empty() ? "" : ",\n";
      members += ForScriptElement(id) + ":" + ForScriptElement(url);
    }
    return "{" + members + "}";
  }

  OutputFile output_;
  Coverage coverage_;
  bool has_coverage_ = false;
  std::string events_;
  // The data URLs of the pictures by their ids.
  std::map<std::string, std::string> pictures_;
};

}  // namespace

std::unique_ptr<Report> MakeHtmlReport(OutputFile output) {
  return std::make_unique<HtmlReport>(std::move(output));
}

}  // namespace corvis::kit
