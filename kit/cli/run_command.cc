// corvis run: runs an application with a prompt for phrases.
#include <unistd.h>

#include <filesystem>

#include "cli/application.h"
#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/exit_status.h"
#include "cli/file_watch.h"
#include "cli/json_session.h"
#include "cli/line_source.h"
#include "cli/prompt.h"
#include "service/main_loop.h"

namespace corvis::kit {

namespace {

// The folder with the files of an application; empty for that of a URL.
std::string WatchedFolder(const std::string& application) {
  std::error_code ignored;
  if (std::filesystem::is_directory(application, ignored)) return application;
  if (!std::filesystem::exists(application, ignored)) return "";
  return std::filesystem::absolute(application).parent_path().string();
}

class RunCommand : public Subcommand {
 public:
  void Declare(CLI::App& app) override {
    Describe(
        app,
        "Runs the page with a prompt for phrases; help lists them. If standard input is not a terminal,\n"
        "each of its lines is said to the page.");
    options_.console = "page";
    AddApplicationOptions(app, Viewer::kPerson, options_);
    AddInspectOption(app, options_);
    AddFlag(app, "--watch", "reload the page when a file of the application is saved", is_watching_);
    BeginGroup(app, "For other programs");
    AddFlag(app, "--json", "read JSON commands from standard input, write JSON events to standard output",
            is_json_);
    DescribeStatuses(app,
                     {{kExitOk, "ended by quit, by the end of input, or by closing the window at the prompt"},
                      {kExitFailed, "the application ended by itself"}});
  }

  Result<int> Execute(Supervisor& supervisor, const std::vector<std::string>& operands) override {
    if (is_watching_ && (is_json_ || WatchedFolder(operands[0]).empty()))
      return Fail("--watch needs an HTML file or a folder, and a prompt.", ErrorKind::kUsage);
    if (is_json_) return ExecuteJson(supervisor, operands[0]);
    options_.run.is_api_followed = options_.console == "all";
    const std::unique_ptr<LineSource> lines = OpenStandardInput();
    const auto run = StartApplication(
        supervisor, operands[0], options_, [&lines](const std::string& sentence) { lines->Show(sentence); },
        [&lines](const std::string& line) { lines->ShowError(line); });
    if (!run) return Fail(run.error());
    if (isatty(STDIN_FILENO) == 1) {
      lines->Show(
          "The page is loading; voice works when it has called listen(). Everything else works before.");
    } else if (const Status arrived = WaitUntilLoaded(**run, options_); !arrived && !IsInterrupted()) {
      lines->Show(arrived.error().message);
    } else {
      // Nobody would say it again.
      (*run)->conversation().WaitToBeHeard();
    }
    Prompt prompt((*run)->conversation(), *lines);
    // A recording in the application's folder is no change of the page.
    FileWatch watch([&prompt](const std::string& path) {
      return std::filesystem::path(path).extension() == ".voice" || prompt.HasWritten(path);
    });
    watch.set_on_change([&] {
      if (!watch.TakeChanges().empty()) prompt.TakeChange();
    });
    if (is_watching_) watch.Add(WatchedFolder(operands[0]));
    prompt.Run();
    if (!lines->status()) return Fail(lines->status().error());
    const Error* reason = WhyWaitsEnd();
    const bool is_window_closed =
        reason != nullptr && reason->kind == ErrorKind::kClosed && isatty(STDIN_FILENO) == 1;
    return reason == nullptr || is_window_closed ? Result<int>(kExitOk) : Fail(*reason);
  }

 private:
  Result<int> ExecuteJson(Supervisor& supervisor, const std::string& application) {
    JsonSession session(application);
    ApplicationOptions options = options_;
    options.console = "none";
    const auto run =
        StartApplication(supervisor, application, options,
                         [&session](const std::string& sentence) { session.TakeNotice(sentence); });
    if (run) Converse(**run, session);
    const Error* reason = run ? WhyWaitsEnd() : &run.error();
    const int signal = supervisor.signal_status();
    const int status = reason == nullptr ? kExitOk : signal != 0 ? signal : StatusOf(reason->kind);
    Result<int> ended = session.End(status, reason);
    return ended && reason != nullptr ? Fail(*reason) : ended;
  }

  void Converse(Run& run, JsonSession& session) {
    Conversation& conversation = run.conversation();
    conversation.set_on_console([&session, kind = options_.console](const std::string& level,
                                                                    const std::string& text,
                                                                    const std::string& source) {
      if (kind == "all" || kind == source) session.Take(ConsoleWritten{level, text, source});
    });
    conversation.WaitToBeHeard();
    const Status arrived = WaitUntilLoaded(run, options_);
    if (!arrived && !IsInterrupted()) session.TakeNotice(arrived.error().message);
    const std::unique_ptr<LineSource> lines = OpenPlainInput();
    session.Run(conversation, *lines);
  }

  ApplicationOptions options_;
  bool is_json_ = false;
  bool is_watching_ = false;
};

}  // namespace

std::unique_ptr<Subcommand> MakeRunCommand() {
  return std::make_unique<RunCommand>();
}

}  // namespace corvis::kit
