// corvis run: an application, and a prompt for what is said to it.
#include <unistd.h>

#include "cli/application.h"
#include "cli/commands.h"
#include "cli/line_source.h"
#include "cli/prompt.h"
#include "service/main_loop.h"

namespace corvis::kit {

namespace {

class RunCommand : public Subcommand {
 public:
  void Declare(CLI::App& app) override {
    app.description(
        "Runs the page and gives a prompt for what is said to it, where help lists the phrases. When "
        "standard\n"
        "input is no terminal, each of its lines is said.");
    options_.console = "page";
    AddApplicationOptions(app, Viewer::kPerson, options_);
    DescribeStatuses(
        app, {{kExitOk, "ended by quit, the end of input, or the window's end while somebody was typing"},
              {kExitFailed, "the application ended by itself"}});
  }

  Result<int> Execute(Supervisor& supervisor, const std::vector<std::string>& operands) override {
    const std::unique_ptr<LineSource> lines = OpenStandardInput(Prompt::CompletionWords());
    const auto run = StartApplication(
        supervisor, operands[0], options_, [&lines](const std::string& sentence) { lines->Show(sentence); },
        [&lines](const std::string& line) { lines->ShowError(line); });
    if (!run) return Fail(run.error());
    const Status arrived = WaitUntilListening(**run, options_);
    if (!arrived && !IsInterrupted()) lines->Show(arrived.error().message);
    Prompt((*run)->conversation(), *lines).Run();
    if (!lines->status()) return Fail(lines->status().error());
    const Error* reason = WhyWaitsEnd();
    const bool is_window_closed =
        reason != nullptr && reason->kind == ErrorKind::kClosed && isatty(STDIN_FILENO) == 1;
    return reason == nullptr || is_window_closed ? Result<int>(kExitOk) : Fail(*reason);
  }

 private:
  ApplicationOptions options_;
};

}  // namespace

std::unique_ptr<Subcommand> MakeRunCommand() {
  return std::make_unique<RunCommand>();
}

}  // namespace corvis::kit
