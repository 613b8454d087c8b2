// The checks, those in the page first.
#include "lint/lint.h"

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>

#include "language/phrases.h"
#include "page_checks_script.h"

namespace corvis::kit {

namespace {

using Json = nlohmann::json;

// Encoded answers beyond this travel in pieces.
constexpr size_t kPieceSize = 12288;
constexpr double kNearSize = 0.9;

std::string TextAt(const Json& object, const char* member) {
  const auto value = object.find(member);
  return value != object.end() && value->is_string() ? value->get<std::string>() : "";
}

void Append(std::vector<Finding>& findings, std::vector<Finding> more) {
  findings.insert(findings.end(), more.begin(), more.end());
}

std::vector<Finding> CheckPage(RuntimeControl& runtime) {
  const Result<std::string> result =
      runtime.Evaluate(std::string("(function () {") + kPageChecks + "return pageChecks(); })()");
  if (!result) return {{"page", "The page can't be looked at: " + result.error().message, ""}};
  return ReadPageFindings(*result);
}

std::vector<Finding> CheckItems(Conversation& conversation) {
  const Result<ItemList> list = conversation.AskItems();
  if (list) return CheckItemList(*list, *conversation.items_turn().answer);
  return {{"answer", "Asked for its items, the page fails. " + list.error().message, ""}};
}

std::vector<Finding> CheckCallback(Conversation& conversation, const ActionInfo& action) {
  const int crashes_before = conversation.crashes();
  const std::string name(action.name);
  const Turn turn = conversation.Say(SamplePhrase(name));
  const std::string callback(action.callback);
  if (conversation.crashes() > crashes_before) {
    return {{"callback", "The page's process crashed in it.", callback}};
  }
  if (!turn.answer) return {{"callback", turn.answer.error().message, callback}};
  const std::string exception = conversation.ExceptionOf(turn);
  if (exception.empty()) return {};
  return {{"callback", "It threw for \"" + turn.said + "\": " + exception, callback}};
}

std::vector<Finding> CheckCallbacks(Conversation& conversation) {
  std::vector<Finding> findings;
  // What the page registers reaches the console's listener ahead of the reply.
  static_cast<void>(conversation.runtime().Sync());
  // After this one there may be no page to speak with.
  constexpr std::string_view kLast = "ACTION_EXIT";
  std::vector<ActionInfo> actions = Actions();
  std::stable_partition(actions.begin(), actions.end(),
                        [&](const auto& action) { return action.name != kLast; });
  for (const ActionInfo& action : actions) {
    const bool is_own = !action.callback.empty() && conversation.registered().Has(std::string(action.name));
    if (is_own) Append(findings, CheckCallback(conversation, action));
  }
  return findings;
}

}  // namespace

std::vector<Finding> ReadPageFindings(const std::string& value) {
  const Json parsed = Json::parse(value, nullptr, /*allow_exceptions=*/false);
  std::vector<Finding> findings;
  if (!parsed.is_array()) return findings;
  for (const Json& object : parsed) {
    if (!object.is_object()) continue;
    findings.push_back({TextAt(object, "rule"), TextAt(object, "sentence"), TextAt(object, "where")});
  }
  return findings;
}

std::vector<Finding> CheckItemList(const ItemList& list, const Answer& answer) {
  std::vector<Finding> findings;
  std::map<std::string, std::vector<long>> numbers;
  for (const Item& item : list.items) {
    if (item.is_visible && item.HasBox()) numbers[item.title].push_back(item.number);
  }
  for (const auto& [title, same] : numbers) {
    if (same.size() == 1) continue;
    std::string where = "items";
    for (const long number : same) where += " " + std::to_string(number);
    findings.push_back({"same-title", "Several items are called \"" + title + "\".", where});
  }
  const auto size = static_cast<double>(answer.data.size());
  if (answer.pieces > 1) {
    findings.push_back({"size",
                        "The list of items has " + std::to_string(answer.data.size()) +
                            " bytes and comes in " + std::to_string(answer.pieces) +
                            " pieces; a screen with fewer items answers faster.",
                        ""});
  } else if (size > kNearSize * kPieceSize) {
    findings.push_back({"size",
                        "The list of items has " + std::to_string(answer.data.size()) +
                            " bytes, close to the size beyond which answers come in pieces.",
                        ""});
  }
  return findings;
}

std::vector<Finding> Lint(Conversation& conversation, bool is_calling) {
  std::vector<Finding> findings = CheckPage(conversation.runtime());
  if (!conversation.service().HasApp(conversation.app_id())) {
    findings.insert(findings.begin(),
                    {"listen", "The page has not called listen(). " + conversation.WhyItMayNotListen(), ""});
    return findings;
  }
  Append(findings, CheckItems(conversation));
  if (is_calling) Append(findings, CheckCallbacks(conversation));
  return findings;
}

}  // namespace corvis::kit
