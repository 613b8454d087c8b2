// corvis lint: reports what would make voice fail on a page.
#include "lint/lint.h"

#include <fmt/format.h>

#include <nlohmann/json.hpp>

#include "cli/application.h"
#include "cli/command_line.h"
#include "cli/commands.h"
#include "output/output_file.h"
#include "output/text_forms.h"
#include "service/main_loop.h"

namespace corvis::kit {

namespace {

std::string LineOf(const Finding& finding, bool is_json) {
  if (is_json) {
    return JsonLine({{"rule", finding.rule}, {"sentence", finding.sentence}, {"where", finding.where}}) +
           "\n";
  }
  const std::string where = finding.where.empty() ? "" : ForTerminal(finding.where) + ": ";
  return fmt::format("{:<10}  {}{}\n", finding.rule, where, ForTerminal(finding.sentence));
}

class LintCommand : public Subcommand {
 public:
  void Declare(CLI::App& app) override {
    Describe(app, "Loads the page and reports what would make voice fail on it.");
    BeginGroup(app, "Output");
    AddFlag(app, "--call",
            "also call each of the page's callbacks (they act on the page) and report those that fail",
            is_calling_);
    AddText(app, "--png", "FILE", "number the findings and save a screenshot of the page with their places",
            png_file_);
    AddFlag(app, "--json", "print one JSON object per line and nothing else", is_json_);
    AddApplicationOptions(app, Viewer::kProgram, options_);
    DescribeStatuses(app, {{kExitOk, "nothing found"},
                           {kExitFailed, "something found"},
                           {kExitNoApp, "the application can't be loaded"}});
  }

  Result<int> Execute(Supervisor& supervisor, const std::vector<std::string>& operands) override {
    ApplicationOptions options = options_;
    options.run.runtime_arguments.insert(options.run.runtime_arguments.end(),
                                         {"--page-script", LintPageScript()});
    const auto run = StartApplication(supervisor, operands[0], options);
    if (!run) return Fail(run.error());
    // A page that never listens is a finding, not an error.
    static_cast<void>(WaitUntilListening(**run, options_));
    (*run)->conversation().WaitForRest();
    Conversation& conversation = (*run)->conversation();
    const Result<std::vector<Finding>> findings = Lint(conversation, is_calling_);
    if (!findings) return Fail(WhyWaitsEnd() == nullptr ? findings.error() : *WhyWaitsEnd());
    const Status saved = png_file_.empty() ? Status() : SavePicture(conversation, *findings);
    const Result<int> printed = Print(*findings);
    return saved || !printed ? printed : Fail(saved.error());
  }

 private:
  Status SavePicture(Conversation& conversation, const std::vector<Finding>& findings) const {
    const Result<std::string> picture = PictureOf(conversation, findings);
    return picture ? WriteOutputFile(png_file_, *picture) : Status(Fail(picture.error()));
  }

  Result<int> Print(const std::vector<Finding>& findings) const {
    std::string text;
    for (const Finding& finding : findings) {
      const bool is_numbered = !png_file_.empty() && !is_json_;
      if (is_numbered) text += fmt::format("{:>3}  ", &finding - findings.data() + 1);
      text += LineOf(finding, is_json_);
    }
    if (text.empty() && !is_json_) text = "Found nothing that would make voice fail on this page.\n";
    const Status printed = WriteStandardOutput(text);
    if (!printed) return Fail(printed.error());
    return findings.empty() ? kExitOk : kExitFailed;
  }

  ApplicationOptions options_;
  std::string png_file_;
  bool is_calling_ = false;
  bool is_json_ = false;
};

}  // namespace

std::unique_ptr<Subcommand> MakeLintCommand() {
  return std::make_unique<LintCommand>();
}

}  // namespace corvis::kit
