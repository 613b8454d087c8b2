// Stores the failed tests as one JSON file for each application, which exists only while there are any.
#include "cli/last_failed.h"

#include <glib.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "cli/paths.h"
#include "nurvo_desktop/glib_ptr.h"
#include "output/output_file.h"
#include "output/text_forms.h"

namespace corvis::kit {

namespace {

using Json = nlohmann::ordered_json;
namespace fs = std::filesystem;

// A path as an absolute one; a URL unchanged.
std::string Absolute(const std::string& name) {
  std::error_code ignored;
  return fs::exists(name, ignored) ? AbsolutePath(name) : name;
}

std::string StateFile(const std::string& application) {
  const nurvo::GText digest(g_compute_checksum_for_string(G_CHECKSUM_SHA256, application.c_str(),
                                                          static_cast<gssize>(application.size())));
  return StateFolder() / "last-failed" / (std::string(digest.get()) + ".json");
}

}  // namespace

LastFailed::LastFailed(const std::string& application)
    : application_(Absolute(application)), file_(StateFile(application_)) {
  Read();
}

void LastFailed::Read() {
  std::ifstream file(file_);
  std::ostringstream text;
  text << file.rdbuf();
  const Json state = Json::parse(text.str(), nullptr, false);
  if (!state.is_object() || !state.contains("failed") || !state["failed"].is_array()) return;
  for (const Json& test : state["failed"]) {
    if (!test.is_object() || !test.contains("script") || !test["script"].is_string()) continue;
    const bool has_name = test.contains("name") && test["name"].is_string();
    tests_.emplace(test["script"].get<std::string>(),
                   has_name ? std::optional(test["name"].get<std::string>()) : std::nullopt);
  }
}

bool LastFailed::Contains(const VoiceScript& script, const ScriptTest& test) const {
  return tests_.count({Absolute(script.file), test.name}) > 0;
}

void LastFailed::Take(const Event& event) {
  const auto* test = std::get_if<TestDone>(&event);
  if (test == nullptr || test->outcome == TestOutcome::kSkipped) return;
  const Key key(Absolute(test->place.file), test->name);
  if (test->outcome == TestOutcome::kFailed) {
    tests_.insert(key);
  } else {
    tests_.erase(key);
  }
}

void LastFailed::Save() const {
  std::error_code ignored;
  if (tests_.empty()) {
    fs::remove(file_, ignored);
    return;
  }
  Json state = {{"application", application_}, {"failed", Json::array()}};
  for (const auto& [script, name] : tests_)
    state["failed"].push_back({{"script", script}, {"name", name ? Json(*name) : Json()}});
  // Replaced at once, because another run may read it.
  const std::string written = file_ + "." + std::to_string(g_random_int());
  if (WriteOutputFile(written, JsonLine(state) + "\n")) fs::rename(written, file_, ignored);
}

}  // namespace corvis::kit
