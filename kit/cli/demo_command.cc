// corvis demo: the example application, and a short conversation with it.
#include "cli/application.h"
#include "cli/commands.h"
#include "cli/script_run.h"

namespace corvis::kit {

namespace {

class DemoCommand : public Subcommand {
 public:
  void Declare(CLI::App& app) override {
    app.description(
        "Runs the example application, speaks a short conversation with it, and prints for each line what "
        "was\n"
        "said, which action it became, what the page did, the answer, and the milliseconds from the service "
        "to\n"
        "the page and back.");
    AddDisplayOptions(app, Viewer::kPerson, options_.application);
    DescribeStatuses(app, {{kExitOk, "every answer was the expected one"}, {kExitFailed, "one was not"}});
  }

  Result<int> Execute(Supervisor& supervisor, const std::vector<std::string>& /*operands*/) override {
    // Whoever has a window wants to see what happens in it.
    constexpr auto kPace = std::chrono::milliseconds(600);
    const std::string example = options_.application.run.places.examples + "/cinema";
    options_.report = "narrate";
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
