// The module's entry points. Arguments and results are UTF-8 texts, some of them JSON; a result stays valid
// until the next call of the same entry point.
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "app/json_text.h"
#include "console.h"
#include "host.h"
#include "page.h"
#include "platform/bus.h"
#include "tv.h"

namespace corvis::simulator {

namespace {

std::unique_ptr<Tv>& TheTv() {
  static auto* const tv = new std::unique_ptr<Tv>;
  return *tv;
}

const char* Returned(std::string text) {
  static auto* const returned = new std::string;
  *returned = std::move(text);
  return returned->c_str();
}

std::vector<std::string> ListOf(const char* json) {
  return kit::ParseJson(json).value().get<std::vector<std::string>>();
}

}  // namespace

// Call this once, before all other entry points. Returns the path under which pages find the API.
CORVIS_ENTRY("start") const char* Start(const char* app_id, const char* privileges) {
  TheTv() = std::make_unique<Tv>(app_id, ListOf(privileges));
  const Acting app(app_id);
  return Returned(StartLibrary());
}

// Returns why the phrase file can't be read; empty if it can.
CORVIS_ENTRY("speak") const char* Speak(const char* phrase_file) {
  const kit::Status status = TheTv()->Speak(phrase_file);
  return Returned(status ? "" : status.error().message);
}

CORVIS_ENTRY("open_page") void StartPage() {
  const Acting app(TheTv()->app_id());
  OpenPage();
}

CORVIS_ENTRY("close_page") void EndPage() {
  const Acting app(TheTv()->app_id());
  ClosePage();
}

// Handles a synchronous call of the page's script, possibly while another entry point is running.
CORVIS_ENTRY("call") const char* Call(const char* message) {
  static auto* const reply = new std::string;
  const Acting app(TheTv()->app_id());
  *reply = CallLibrary(message);
  return reply->c_str();
}

CORVIS_ENTRY("console") void Console(const char* level, const char* text, const char* source) {
  WriteConsole(level, text, source);
}

CORVIS_ENTRY("deliver") void Deliver() {
  Tv::DeliverAll();
}

CORVIS_ENTRY("is_listening") bool IsListening() {
  return TheTv()->HasApp();
}

CORVIS_ENTRY("phrases") const char* Phrases() {
  return Returned(TextOf(TheTv()->Phrases()));
}

// Steps. Each emits its event before it returns.

CORVIS_ENTRY("say") void Say(const char* phrase) {
  TheTv()->Say(phrase);
}

CORVIS_ENTRY("send") void Send(const char* raw) {
  TheTv()->Send(raw);
}

// `entries` is a list of keys and values, alternately.
CORVIS_ENTRY("send_entries") void SendEntries(const char* action, const char* entries) {
  const std::vector<std::string> texts = ListOf(entries);
  kit::Entries pairs;
  for (size_t i = 0; i + 1 < texts.size(); i += 2) pairs.emplace_back(texts[i], texts[i + 1]);
  TheTv()->SendEntries(action, pairs);
}

CORVIS_ENTRY("items") void Items(const char* title) {
  TheTv()->Items(title);
}

CORVIS_ENTRY("restart") void Restart() {
  TheTv()->Restart();
}

CORVIS_ENTRY("set_privileges") void SetPrivileges(const char* privileges) {
  TheTv()->SetPrivileges(ListOf(privileges));
}

}  // namespace corvis::simulator
