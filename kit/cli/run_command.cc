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
        "Runs the page and gives a prompt for what is said to it; help there lists the phrases. Phrases are "
        "taken\n"
        "from standard input when it is no terminal.");
    options_.console = "page";
    AddApplicationOptions(app, Viewer::kPerson, options_);
  }

  StatusMeanings Statuses() const override {
    return {{kExitOk, "ended by quit, or by the end of input"},
            {kExitFailed, "the application ended before that"}};
  }

  Result<int> Execute(Supervisor& supervisor, const std::vector<std::string>& operands) override {
    const std::unique_ptr<LineSource> lines = OpenStandardInput(Prompt::CompletionWords());
    const auto run = StartApplication(
        supervisor, operands[0], options_, [&lines](const std::string& sentence) { lines->Show(sentence); },
        [&lines](const std::string& line) { lines->Show(line, stderr); });
    if (!run) return Fail(run.error());
    const Status arrived = WaitUntilListening(**run, options_);
    if (!arrived && !IsInterrupted()) lines->Show(arrived.error().message);
    Prompt((*run)->conversation(), *lines).Run();
    const Error* reason = WhyWaitsEnd();
    return reason == nullptr ? Result<int>(kExitOk) : Fail(*reason);
  }

 private:
  ApplicationOptions options_;
};

}  // namespace

std::unique_ptr<Subcommand> MakeRunCommand() {
  return std::make_unique<RunCommand>();
}

}  // namespace corvis::kit
