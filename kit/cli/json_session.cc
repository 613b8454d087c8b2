// Runs each command as a step of the script runner, which emits the events.
#include "cli/json_session.h"

#include <nlohmann/json.hpp>
#include <utility>

#include "app/json_text.h"
#include "cli/exit_status.h"
#include "cli/json_commands.h"
#include "output/text_forms.h"
#include "report/json_forms.h"

namespace corvis::kit {

namespace {

using Json = nlohmann::ordered_json;

// A step's event, without the position in a script.
Json FormOf(const StepDone& done, const Json& id, const Json& found) {
  Json form = {{"event", "step"}, {"id", id}};
  form.update(JsonFormOf(done));
  for (const char* name : {"file", "line", "column", "shown"}) form.erase(name);
  if (!done.shown.empty()) form["value"] = done.shown;
  form.update(found);
  return form;
}

}  // namespace

JsonSession::JsonSession(const std::string& application) {
  Write({{"event", "start"}, {"format", 1}, {"application", application}});
}

void JsonSession::Take(const Event& event) {
  Write(JsonFormOf(event));
}

void JsonSession::TakeNotice(const std::string& sentence) {
  Write({{"event", "notice"}, {"text", sentence}});
}

void JsonSession::Run(Conversation& conversation, LineSource& lines) {
  ScriptRunner runner(conversation, *this);
  runner.ReportPage();
  while (output_.status()) {
    const std::optional<std::string> line = lines.Next();
    if (!line || !RunLine(runner, *line)) break;
  }
  runner.ReportPage();
}

bool JsonSession::RunLine(ScriptRunner& runner, const std::string& line) {
  if (line.find_first_not_of(" \t\r") == std::string::npos) return true;
  const auto parsed = ParseJson(line);
  const auto id = parsed && parsed->is_object() ? Json(parsed->value("id", nlohmann::json())) : Json();
  const auto command = parsed ? ReadJsonCommand(*parsed) : Fail(parsed.error());
  if (!command) {
    Write({{"event", "error"}, {"id", id}, {"message", command.error().message}});
    return true;
  }
  if (command->is_quit) return false;
  Write(FormOf(runner.RunAlone(command->step), id, *command->found));
  return true;
}

Result<int> JsonSession::End(int status, const Error* error) {
  if (error != nullptr && !error->message.empty()) Write({{"event", "abort"}, {"message", error->message}});
  const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begin_);
  Write({{"event", "end"}, {"status", status}, {"ms", time.count()}});
  const Status written = output_.Finish();
  if (written) return status;
  PrintError(written.error());
  return status == kExitOk ? kExitFailed : status;
}

void JsonSession::Write(const Json& event) {
  output_.Write(JsonLine(event) + "\n");
}

}  // namespace corvis::kit
