// A conversation that another program drives: JSON commands in, JSON events out, one a line.
#ifndef CORVIS_KIT_CLI_JSON_SESSION_H_
#define CORVIS_KIT_CLI_JSON_SESSION_H_

#include <chrono>
#include <nlohmann/json.hpp>
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
  // Writes the event of a sentence of the voice service.
  void TakeNotice(const std::string& sentence);

  // Runs the commands that the lines hold, until "quit", the end of the lines or that of the application.
  void Run(Conversation& conversation, LineSource& lines);

  // Writes the last event, after that of an error. Returns `status`, or another if not every event could be
  // written.
  Result<int> End(int status, const Error* error);

 private:
  using Json = nlohmann::ordered_json;

  // Whether the session goes on.
  bool RunLine(ScriptRunner& runner, const std::string& line);
  void Write(const Json& event);

  const Clock::time_point begin_ = Clock::now();
  OutputFile output_ = OutputFile::Standard();
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_JSON_SESSION_H_
