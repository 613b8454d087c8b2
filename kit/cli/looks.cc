// Tables, or JSON, on standard output.
#include "cli/looks.h"

#include <cstdio>

#include "lint/lint.h"
#include "output/output_file.h"
#include "output/text_forms.h"

namespace corvis::kit {

namespace {

void PrintFinding(const Finding& finding, bool is_json) {
  if (is_json) {
    std::printf("{\"rule\":%s,\"sentence\":%s,\"where\":%s}\n", JsonText(finding.rule).c_str(),
                JsonText(finding.sentence).c_str(), JsonText(finding.where).c_str());
  } else {
    std::printf("%-10s  %s%s%s\n", finding.rule.c_str(), ForTerminal(finding.where).c_str(),
                finding.where.empty() ? "" : ": ", ForTerminal(finding.sentence).c_str());
  }
}

}  // namespace

int ShowItems(Conversation& conversation, const Options& options) {
  const Result<ItemList> items = conversation.AskItems();
  Status status = items ? Status() : Status(Fail(items.error()));
  if (items) {
    const Answer& answer = *conversation.items_turn().answer;
    const bool is_json = options.output == Output::kJson;
    const std::string text = is_json ? answer.data : ItemTable(*items) + DescribeItemsAnswer(*items, answer);
    std::printf("%s\n", text.c_str());
  }
  if (items && !options.png_file.empty()) {
    const Result<std::string> picture = conversation.PictureOf(*items);
    status = picture ? WriteOutputFile(options.png_file, *picture) : Fail(picture.error());
  }
  if (status) return kExitOk;
  std::fprintf(stderr, "corvis-voice: %s\n", status.error().message.c_str());
  return kExitFailed;
}

int ShowFindings(Conversation& conversation, const Options& options) {
  const Result<std::vector<Finding>> looked = Lint(conversation, options.is_calling);
  if (!looked) {
    std::fprintf(stderr, "corvis-voice: %s\n", looked.error().message.c_str());
    return kExitFailed;
  }
  const std::vector<Finding>& findings = *looked;
  const bool is_json = options.output == Output::kJson;
  for (const Finding& finding : findings) PrintFinding(finding, is_json);
  if (findings.empty() && !is_json)
    std::printf("Nothing was found that would make voice fail on this page.\n");
  return findings.empty() ? kExitOk : kExitFailed;
}

}  // namespace corvis::kit
