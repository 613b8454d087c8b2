// A conversation that another program drives with JSON commands and events, one per line.
#ifndef CORVIS_KIT_CLI_JSON_SESSION_H_
#define CORVIS_KIT_CLI_JSON_SESSION_H_

#include <chrono>
#include <nlohmann/json_fwd.hpp>
#include <string>

#include "app/conversation.h"
#include "base/result.h"
#include "cli/line_source.h"
#include "events/events.h"
#include "output/output_file.h"
#include "script/runner.h"

namespace corvis::kit {

class JsonSession : public EventSink {
 public:
  // Writes the first event.
  explicit JsonSession(const std::string& application);

  void Take(const Event& event) override;
  // Writes the event for a notice of the voice service.
  void TakeNotice(const std::string& sentence);

  // Runs the commands in the lines until "quit", the end of input, or the end of the application.
  void Run(Conversation& conversation, LineSource& lines);

  // Writes the event for the error, if any, and the last event. Returns `status`, or an error status if an
  // event could not be written.
  Result<int> End(int status, const Error* error);

 private:
  using Json = nlohmann::ordered_json;

  // Runs one command. Returns whether the session continues.
  bool RunLine(ScriptRunner& runner, const std::string& line);
  void Write(const Json& event);

  const Clock::time_point begin_ = Clock::now();
  OutputFile output_ = OutputFile::Standard();
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_JSON_SESSION_H_
