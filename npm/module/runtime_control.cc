// RuntimeControl in a page, which has no web runtime: supports the console and the privileges only.
#include "app/runtime_control.h"

#include <set>
#include <utility>

#include "console.h"
#include "platform/access.h"

namespace corvis::simulator {

namespace {

kit::RuntimeControl::ConsoleSink& Sink() {
  static auto* const sink = new kit::RuntimeControl::ConsoleSink;
  return *sink;
}

}  // namespace

void WriteConsole(const std::string& level, const std::string& text, const std::string& source) {
  if (Sink()) Sink()(level, text, source);
}

}  // namespace corvis::simulator

namespace corvis::kit {

class RuntimeControl::Watch {};

namespace {

constexpr const char* kMissing = "There is no runtime in a page.";

}  // namespace

RuntimeControl::RuntimeControl(std::string app_id, std::chrono::milliseconds timeout)
    : app_id_(std::move(app_id)), timeout_(timeout) {}
RuntimeControl::~RuntimeControl() = default;

void RuntimeControl::WatchConsole(ConsoleSink sink) {
  simulator::Sink() = std::move(sink);
}

// NOLINTBEGIN(performance-unnecessary-value-param): the header of the runtime's client sets the signatures.
void RuntimeControl::WatchLoads(std::function<void()> /*sink*/) {}
void RuntimeControl::WatchCrashes(std::function<void()> /*sink*/) {}
void RuntimeControl::WatchClosing(std::function<void()> /*sink*/) {}
// NOLINTEND(performance-unnecessary-value-param)

Status RuntimeControl::Load(const std::string& /*url*/) {
  return Fail(kMissing);
}

Status RuntimeControl::Reload() {
  return Fail(kMissing);
}

Result<std::string> RuntimeControl::Evaluate(const std::string& /*expression*/) {
  return Fail(kMissing);
}

Result<std::string> RuntimeControl::Address() {
  return Fail(kMissing);
}

Status RuntimeControl::SetAddress(const std::string& /*url*/) {
  return Fail(kMissing);
}

Result<std::optional<std::string>> RuntimeControl::GoToPlace(const std::string& /*url*/) {
  return Fail(kMissing);
}

Result<bool> RuntimeControl::IsLoaded() {
  return Fail(kMissing);
}

Result<std::string> RuntimeControl::Items() {
  return Fail(kMissing);
}

Result<std::string> RuntimeControl::Activity() {
  return Fail(kMissing);
}

Result<std::string> RuntimeControl::Screenshot() {
  return Fail(kMissing);
}

Status RuntimeControl::Sync() {
  return {};
}

Result<bool> RuntimeControl::EndHangingPage(std::chrono::milliseconds /*limit*/) {
  return false;
}

Status RuntimeControl::ClearStorage() {
  return Fail(kMissing);
}

Status RuntimeControl::SetPrivileges(const std::vector<std::string>& uris) {
  simulator::Grant({uris.begin(), uris.end()});
  return {};
}

}  // namespace corvis::kit
