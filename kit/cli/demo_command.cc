// corvis demo: runs the example application and a short conversation with it.
#include "cli/application.h"
#include "cli/commands.h"
#include "cli/script_run.h"

namespace corvis::kit {

namespace {

class DemoCommand : public Subcommand {
 public:
  void Declare(CLI::App& app) override {
    Describe(
        app,
        "Runs the example application and holds a short conversation with it. For each command it prints\n"
        "the phrase, the action, what the page shows, the answer, and the time from the service to the page\n"
        "and back.");
    AddDisplayOptions(app, Viewer::kPerson, options_.application);
    DescribeStatuses(app, {{kExitOk, "all answers were as expected"}, {kExitFailed, "one was not"}});
  }

  Result<int> Execute(Supervisor& supervisor, const std::vector<std::string>& /*operands*/) override {
    // In a window, slow down so that a person can follow.
    constexpr auto kPace = std::chrono::milliseconds(600);
    const std::string example = options_.application.run.places.examples + "/cinema";
    options_.report = "narrate";
    options_.application.language.tag = "en";
    options_.application.run.app_id = "com.example.cinema";
    if (!options_.application.run.is_headless) options_.pace = kPace;
    return RunScripts(supervisor, example, {example + "/demo.voice"}, options_);
  }

 private:
  ScriptRunOptions options_;
};

}  // namespace

std::unique_ptr<Subcommand> MakeDemoCommand() {
  return std::make_unique<DemoCommand>();
}

}  // namespace corvis::kit
