// corvis run: runs an application with a prompt for phrases.
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
        "Runs the page with a prompt for phrases; help lists them. If standard input is not a terminal,\n"
        "each of its lines is said to the page.");
    options_.console = "page";
    AddApplicationOptions(app, Viewer::kPerson, options_);
    DescribeStatuses(app,
                     {{kExitOk, "ended by quit, by the end of input, or by closing the window at the prompt"},
                      {kExitFailed, "the application ended by itself"}});
  }

  Result<int> Execute(Supervisor& supervisor, const std::vector<std::string>& operands) override {
    const Result<SpokenLanguage> language = OpenLanguage(options_.language);
    if (!language) return Fail(language.error());
    const std::unique_ptr<LineSource> lines = OpenStandardInput(Prompt::CompletionWords(language->phrases()));
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
