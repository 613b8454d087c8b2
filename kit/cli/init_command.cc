// corvis init: writes a configuration, a first test and a step for a build server.
#include <filesystem>
#include <nlohmann/json.hpp>

#include "app/run.h"
#include "cli/command_line.h"
#include "cli/commands.h"
#include "output/output_file.h"

namespace corvis::kit {

namespace {

namespace fs = std::filesystem;

constexpr const char* kFirstTest =
    R"(# The first test. Voice scripts are described in docs/voice-scripts.md of the kit.
test "The page is there"
value "document.readyState" matches /^(interactive|complete)$/

# Say what your page handles, and state what you expect of it:
#
# test "Pausing"
# say pause
# expect success
# show "#state" is "paused"
)";

constexpr const char* kStep = R"(#!/bin/sh
# A step for a build server: fails when a voice test fails. Publish reports/ as JUnit results.
exec corvis test-app --junit reports/voice.xml "$@"
)";

// The folder with the page, among those in which projects and their tools put it.
std::string FindApplication() {
  std::error_code ignored;
  for (const char* folder : {".", "dist", "build", "public", "www"}) {
    if (fs::exists(fs::path(folder) / "index.html", ignored)) return folder;
  }
  return "";
}

class InitCommand : public Subcommand {
 public:
  void Declare(CLI::App& app) override {
    Describe(
        app,
        "Writes a configuration (corvis.json), a first test (voice/first.voice) and a step for a build\n"
        "server (voice-tests.sh) into the present folder. Files that exist are kept. The application is by\n"
        "default the folder with an index.html: this one, dist, build, public or www.");
    BeginGroup(app, "Output");
    AddFlag(app, "--schema", "print the JSON schema of corvis.json and write nothing", is_schema_);
    DescribeStatuses(app, {{kExitOk, "written"}, {kExitFailed, "a file can't be written"}});
  }

  Result<int> Execute(Supervisor& /*supervisor*/, const std::vector<std::string>& operands) override {
    if (is_schema_) return Print(ConfigurationSchema(CommandsWithConfiguration()));
    const std::string application = operands.empty() ? FindApplication() : operands[0];
    if (application.empty())
      return Fail(
          "No index.html is here or in dist, build, public or www; expected the application: "
          "corvis init URL|FILE|FOLDER.",
          ErrorKind::kUsage);
    const nlohmann::ordered_json configuration = {
        {"$schema", fs::path(FindPlaces().schema).lexically_normal().string()},
        {"application", application},
        {"scripts", {"voice"}}};
    Status written = Write(kConfigurationFile, configuration.dump(2) + "\n");
    if (written) written = Write("voice/first.voice", kFirstTest);
    if (written) written = Write(kStepFile, kStep);
    if (!written) return Fail(written.error());
    return Print(done_ + "Run it with corvis test-app, or corvis run for a prompt.\n");
  }

 private:
  static constexpr const char* kStepFile = "voice-tests.sh";

  Status Write(const std::string& file, const std::string& text) {
    std::error_code error;
    if (fs::exists(fs::symlink_status(file, error))) {
      done_ += "Kept " + file + ", which exists.\n";
      return {};
    }
    OutputFile output(file, OutputFile::Existing::kRefused);
    output.Write(text);
    const Status written = output.Finish();
    if (written && file == kStepFile)
      fs::permissions(file, fs::perms::owner_exec | fs::perms::group_exec | fs::perms::others_exec,
                      fs::perm_options::add, error);
    done_ += "Wrote " + file + ".\n";
    return written;
  }

  static Result<int> Print(const std::string& text) {
    const Status printed = WriteStandardOutput(text);
    return printed ? Result<int>(kExitOk) : Fail(printed.error());
  }

  bool is_schema_ = false;
  std::string done_;
};

}  // namespace

std::unique_ptr<Subcommand> MakeInitCommand() {
  return std::make_unique<InitCommand>();
}

}  // namespace corvis::kit
