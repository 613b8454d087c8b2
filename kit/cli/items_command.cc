// corvis items: lists what can be selected on a page by voice.
#include "app/items.h"

#include "app/conversation.h"
#include "cli/application.h"
#include "cli/command_line.h"
#include "cli/commands.h"
#include "output/output_file.h"

namespace corvis::kit {

namespace {

class ItemsCommand : public Subcommand {
 public:
  void Declare(CLI::App& app) override {
    Describe(
        app,
        "Loads the page and prints what can be selected on it by voice: the numbers, positions and titles\n"
        "of its items.");
    BeginGroup(app, "Output");
    AddText(app, "--png", "FILE", "save a screenshot of the page with each item's box and number", png_file_);
    AddFlag(app, "--json", "print the page's answer unchanged and nothing else", is_json_);
    AddApplicationOptions(app, Viewer::kProgram, options_);
    DescribeStatuses(app,
                     {{kExitOk, "printed"},
                      {kExitFailed, "the page did not answer with items, or no screenshot could be saved"}});
  }

  Result<int> Execute(Supervisor& supervisor, const std::vector<std::string>& operands) override {
    const auto run = StartApplication(supervisor, operands[0], options_);
    if (!run) return Fail(run.error());
    const Status arrived = WaitUntilListening(**run, options_);
    if (!arrived) return Fail(arrived.error());
    (*run)->conversation().WaitForRest();
    return ShowItems((*run)->conversation());
  }

 private:
  Result<int> ShowItems(Conversation& conversation) const {
    Result<ItemList> items = conversation.AskItems();
    if (!items) return Fail(items.error());
    if (!is_json_) conversation.NoteHidden(*items);
    const Answer& answer = *conversation.items_turn().answer;
    const std::string text = is_json_ ? answer.data : ItemTable(*items) + DescribeItemsAnswer(*items, answer);
    const Status printed = WriteStandardOutput(text + "\n");
    if (!printed) return Fail(printed.error());
    if (!png_file_.empty()) {
      const Result<std::string> picture = conversation.PictureOf(*items);
      const Status saved = picture ? WriteOutputFile(png_file_, *picture) : Status(Fail(picture.error()));
      if (!saved) return Fail(saved.error());
    }
    return kExitOk;
  }

  ApplicationOptions options_;
  std::string png_file_;
  bool is_json_ = false;
};

}  // namespace

std::unique_ptr<Subcommand> MakeItemsCommand() {
  return std::make_unique<ItemsCommand>();
}

}  // namespace corvis::kit
