// Assembles a run and translates the way in which it ends into an error.
#include "app/run.h"

#include <sys/wait.h>

#include <cstdlib>
#include <deque>
#include <filesystem>
#include <string_view>
#include <utility>

#include "app/bus_address.h"
#include "app/keeper.h"
#include "app/process_tree.h"
#include "app/server_probe.h"
#include "app/stage.h"
#include "output/text_forms.h"
#include "service/main_loop.h"

namespace corvis::kit {

namespace {

// The prefix of the runtime's own messages.
constexpr std::string_view kRuntimeMark = "corvis-tv: ";

std::vector<std::string> RuntimeCommand(const RunOptions& options) {
  std::vector<std::string> command = {options.places.runtime,
                                      "--app-id",
                                      options.app_id,
                                      "--extension",
                                      options.places.library,
                                      "--size",
                                      std::to_string(options.width) + "x" + std::to_string(options.height),
                                      "--console",
                                      "none"};
  for (const std::string& privilege : options.privileges) {
    command.insert(command.end(), {"--privilege", PrivilegeUri(privilege)});
  }
  if (!options.profile.empty()) command.insert(command.end(), {"--profile", options.profile});
  if (options.is_api_followed) command.emplace_back("--follow-api");
  if (options.is_headless) command.emplace_back("--headless");
  for (const std::string& grant : options.grants) command.insert(command.end(), {"--grant", grant});
  command.insert(command.end(), options.runtime_arguments.begin(), options.runtime_arguments.end());
  // The page's name may start with "-".
  command.insert(command.end(), {"--", options.page});
  return command;
}

ErrorKind KindOfStatus(int status) {
  // The exit statuses are documented by corvis-tv --help.
  switch (status) {
    case 0:
      return ErrorKind::kClosed;
    case 2:
      return ErrorKind::kUsage;
    case 3:
      return ErrorKind::kNoApplication;
    case 4:
      return ErrorKind::kCrashing;
    default:
      return ErrorKind::kNoEnvironment;
  }
}

Error Closed() {
  return {"The application ended: its page or its window was closed.", ErrorKind::kClosed};
}

Error EndOfRuntime(int wait_status, const std::string& last_sentence) {
  const bool has_exited = WIFEXITED(wait_status);
  const ErrorKind kind = has_exited ? KindOfStatus(WEXITSTATUS(wait_status)) : ErrorKind::kNoEnvironment;
  if (kind == ErrorKind::kClosed) return Closed();
  if (has_exited && !last_sentence.empty()) return {last_sentence, kind};
  return {"The web runtime (corvis-tv) " + HowItEnded(wait_status) + ".", kind};
}

// Fails if the application's server can't be started, or if another one is there that would be mistaken for
// it.
Status CheckServer(const RunOptions& options) {
  if (options.server.command.empty()) return {};
  const ServerAddress address = AddressOf(options.page);
  if (address.host.empty())
    return Fail("--serve needs the URL of the server, for example --url http://localhost:5173.",
                ErrorKind::kUsage);
  if (!IsAnswering(address)) return {};
  return Fail("A server answers at " + options.page + " already. End it, or leave out --serve to use it.",
              ErrorKind::kUsage);
}

}  // namespace

Places FindPlaces() {
  std::error_code ignored;
  const auto folder = std::filesystem::read_symlink("/proc/self/exe", ignored).parent_path();
  const auto built = folder / "corvis-tv";
  if (std::filesystem::exists(built, ignored)) {
    return {built, folder / "../lib/libcorvis_voiceinteraction.so", folder / CORVIS_EXAMPLES_FROM_BUILD,
            folder / "corvis.schema.json"};
  }
  return {folder / CORVIS_RUNTIME_FROM_BIN, folder / CORVIS_LIBRARY_FROM_BIN,
          folder / CORVIS_EXAMPLES_FROM_BIN, folder / CORVIS_SCHEMA_FROM_BIN};
}

struct Run::Parts {
  explicit Parts(RunSinks s)
      : sinks(std::move(s)), service([this](const auto& sentence) { Notice(sentence); }) {}

  void Notice(const std::string& sentence) const {
    if (!is_ending && sinks.notice) sinks.notice(sentence);
  }

  // Keeps the runtime's own messages back: the last one says why it ends, others also come as signals.
  void TakeLine(const std::string& line) {
    if (line.compare(0, kRuntimeMark.size(), kRuntimeMark) == 0) {
      last_sentence = line.substr(kRuntimeMark.size());
    } else if (sinks.runtime_line) {
      sinks.runtime_line(line);
    }
  }

  void TakeServerLine(const std::string& line) {
    constexpr size_t kMostLines = 20;
    server_lines.push_back(line);
    if (server_lines.size() > kMostLines) server_lines.pop_front();
    if (sinks.server_line) sinks.server_line(line);
  }

  // The sentence, and what the server printed last.
  std::string WithServerOutput(std::string sentence) const {
    sentence += server_lines.empty() ? " It printed nothing." : " Its last output:";
    for (const std::string& line : server_lines) sentence += "\n  " + ForTerminal(line);
    return sentence;
  }

  void NoteServerEnd(const std::string& command, int wait_status) {
    // It may have left a server in the background.
    if (WIFEXITED(wait_status) && WEXITSTATUS(wait_status) == 0) return;
    NoteEnd({WithServerOutput("The server (" + command + ") " + HowItEnded(wait_status) + "."),
             ErrorKind::kNoApplication});
  }

  // Waits until the server answers, and starts the runtime.
  Status StartAfterServer(const RunOptions& options) const {
    constexpr auto kAnswerPoll = std::chrono::milliseconds(50);
    const ServerAddress address = AddressOf(options.page);
    const auto end = std::chrono::steady_clock::now() + options.server.limit;
    while (!IsInterrupted() && !IsAnswering(address)) {
      if (std::chrono::steady_clock::now() >= end)
        return Fail(WithServerOutput("The server (" + options.server.command + ") has not answered at " +
                                     options.page + " within " +
                                     std::to_string(options.server.limit.count()) + " s."),
                    ErrorKind::kNoApplication);
      RunFor(kAnswerPoll);
    }
    return IsInterrupted() ? Fail(*WhyWaitsEnd()) : stage->StartRuntimeAgain();
  }

  void NoteEnd(Error reason) {
    if (ending) return;
    // The news of the last end may be late.
    if (is_starting_again && reason.kind == ErrorKind::kClosed) return;
    ending = std::make_unique<Error>(std::move(reason));
    EndWaits(*ending);
  }

  RunSinks sinks;
  bool is_ending = false;
  bool is_starting_again = false;
  std::string last_sentence;
  std::deque<std::string> server_lines;
  std::unique_ptr<Error> ending;
  VoiceService service;
  std::unique_ptr<Conversation> conversation;
  // Declared last so that it is destroyed first; the other members then don't wait for its processes.
  std::unique_ptr<Stage> stage;
};

Run::Run(std::unique_ptr<Parts> parts) : parts_(std::move(parts)) {}
Run::~Run() {
  parts_->is_ending = true;
}

Result<std::unique_ptr<Run>> Run::Start(Supervisor& supervisor, const RunOptions& options, RunSinks sinks) {
  if (const Status checked = CheckServer(options); !checked) return Fail(checked.error());
  auto parts = std::make_unique<Parts>(std::move(sinks));
  StageEvents events;
  events.on_line = [&to = *parts](const std::string& line) { to.TakeLine(line); };
  events.on_runtime_ended = [&to = *parts](int wait_status) {
    to.NoteEnd(EndOfRuntime(wait_status, to.last_sentence));
  };
  events.on_broken = [&to = *parts](const std::string& sentence) {
    to.NoteEnd({sentence, ErrorKind::kNoEnvironment});
  };
  events.on_server_line = [&to = *parts](const std::string& line) { to.TakeServerLine(line); };
  events.on_server_ended = [&to = *parts, command = options.server.command](int wait_status) {
    to.NoteServerEnd(command, wait_status);
  };
  auto stage =
      Stage::Start(supervisor, {RuntimeCommand(options), options.server.command, options.server.folder},
                   std::move(events));
  if (!stage) return Fail(stage.error());
  parts->stage = std::move(*stage);
  if (!options.server.command.empty()) {
    if (const Status started = parts->StartAfterServer(options); !started) return Fail(started.error());
  }
  setenv("DBUS_SESSION_BUS_ADDRESS", BusAddress(parts->stage->folder() + kBusSocket).c_str(), 1);
  if (const Status started = parts->service.Start(); !started)
    return Fail(parts->ending ? *parts->ending : started.error());
  parts->conversation =
      std::make_unique<Conversation>(parts->service, options.app_id, options.answer_timeout);
  std::vector<std::string> privileges;
  for (const std::string& name : options.privileges) privileges.push_back(PrivilegeUri(name));
  parts->conversation->NotePrivileges(std::move(privileges));
  parts->conversation->set_on_console(parts->sinks.console);
  parts->conversation->set_on_crash(
      [&to = *parts] { to.Notice("The page's process crashed; the runtime reloads the page."); });
  parts->conversation->runtime().WatchInspector(SuspendTimeLimits);
  parts->conversation->runtime().WatchClosing([&to = *parts] { to.NoteEnd(Closed()); });
  return std::unique_ptr<Run>(new Run(std::move(parts)));
}

Conversation& Run::conversation() {
  return *parts_->conversation;
}

Status Run::StartAgain(std::chrono::milliseconds limit) {
  Parts& parts = *parts_;
  if (const Status resumed = ResumeWaits(); !resumed) return resumed;
  parts.ending.reset();
  parts.last_sentence.clear();
  parts.is_starting_again = true;
  const Status started =
      parts.conversation->StartAgain([&parts] { return parts.stage->StartRuntimeAgain(); }, limit);
  parts.is_starting_again = false;
  return started;
}

const Error* Run::ending() const {
  return parts_->ending.get();
}

}  // namespace corvis::kit
