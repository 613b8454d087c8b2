// Runs the checks: first those inside the page, then those that need the voice service.
#include "lint/lint.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <nlohmann/json.hpp>

#include "app/page_script.h"
#include "page_checks_script.h"

namespace corvis::kit {

namespace {

using Findings = std::vector<Finding>;

void Append(Findings& findings, Findings more) {
  findings.insert(findings.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
}

// Whether the value has the form of a finding. The page may have replaced functions that the checks use.
bool IsFinding(const nlohmann::json& value) {
  const char* members[] = {"rule", "sentence", "where"};
  return value.is_object() &&
         std::all_of(std::begin(members), std::end(members), [&value](const char* member) {
           return value.contains(member) && value[member].is_string();
         });
}

Result<Findings> CheckPage(Conversation& conversation) {
  const auto value = conversation.runtime().Evaluate(CallAboutItems(kPageChecks, "pageChecks"));
  if (!value) return Fail(value.error());
  Findings findings;
  const auto parsed = nlohmann::json::parse(*value, nullptr, /*allow_exceptions=*/false);
  if (!parsed.is_array() || !std::all_of(parsed.begin(), parsed.end(), IsFinding))
    return Fail("It returned no list of findings. Does it replace built-in functions of the browser?");
  for (const auto& finding : parsed)
    findings.push_back({finding["rule"], finding["sentence"], finding["where"]});
  return findings;
}

Result<Findings> CheckListening(Conversation& conversation) {
  if (conversation.service().HasApp(conversation.app_id())) return Findings();
  return Findings{{"listen", "The page has not called listen(). " + conversation.WhyItMayNotListen(), ""}};
}

Findings CheckTitles(const ItemList& list) {
  std::map<std::string, std::vector<long>> numbers;
  for (const Item& item : list.items) {
    if (item.is_visible && item.HasBox()) numbers[item.title].push_back(item.number);
  }
  Findings findings;
  for (const auto& [title, same] : numbers) {
    if (same.size() == 1) continue;
    findings.push_back({"same-title", fmt::format("Several items are called \"{}\".", title),
                        fmt::format("items {}", fmt::join(same, " "))});
  }
  return findings;
}

Findings CheckSize(const Answer& answer) {
  // Larger encoded answers are sent in pieces.
  constexpr double kPieceSize = 12288;
  constexpr double kNearSize = 0.9;
  const size_t size = answer.data.size();
  if (answer.pieces > 1) {
    return {{"size",
             fmt::format(
                 "The list of items has {} bytes and is sent in {} pieces; a screen with fewer items answers "
                 "faster.",
                 size, answer.pieces),
             ""}};
  }
  if (static_cast<double>(size) <= kNearSize * kPieceSize) return {};
  return {
      {"size",
       fmt::format(
           "The list of items has {} bytes, close to the size above which answers are sent in pieces.", size),
       ""}};
}

Result<Findings> CheckItems(Conversation& conversation) {
  const Result<ItemList> list = conversation.AskItems();
  if (!list)
    return Findings{{"answer", "The page does not answer with its items. " + list.error().message, ""}};
  Findings findings = CheckTitles(*list);
  Append(findings, CheckSize(*conversation.items_turn().answer));
  return findings;
}

Findings CheckCallback(Conversation& conversation, const ActionInfo& action) {
  const int crashes_before = conversation.crashes();
  const Turn turn = conversation.Say(conversation.phrases().SampleFor(action.name));
  const std::string callback(action.callback);
  if (conversation.crashes() > crashes_before) {
    return {{"callback", "The page's process crashed in this callback.", callback}};
  }
  if (!turn.answer) return {{"callback", turn.answer.error().message, callback}};
  const std::string exception = conversation.ExceptionOf(turn);
  if (exception.empty()) return {};
  return {{"callback", "The callback threw for \"" + turn.said + "\": " + exception, callback}};
}

Result<Findings> CheckCallbacks(Conversation& conversation) {
  // Registrations are read from the console, whose lines arrive before this call's reply.
  if (const Status synced = conversation.runtime().Sync(); !synced) return Fail(synced.error());
  // Called last, because it may end the page.
  constexpr std::string_view kLast = "ACTION_EXIT";
  std::vector<ActionInfo> actions = Actions();
  std::stable_partition(actions.begin(), actions.end(),
                        [&](const auto& action) { return action.name != kLast; });
  Findings findings;
  for (const ActionInfo& action : actions) {
    const bool is_own = !action.callback.empty() && conversation.registered().Has(std::string(action.name));
    if (is_own) Append(findings, CheckCallback(conversation, action));
  }
  return findings;
}

struct Check {
  enum class When { kAlways, kListening, kCalling } when;
  Result<Findings> (*run)(Conversation& conversation);
};

constexpr Check kChecks[] = {
    {Check::When::kAlways, CheckListening},
    {Check::When::kAlways, CheckPage},
    {Check::When::kListening, CheckItems},
    {Check::When::kCalling, CheckCallbacks},
};

bool IsDue(Check::When when, bool is_listening, bool is_calling) {
  if (when == Check::When::kAlways) return true;
  return is_listening && (when == Check::When::kListening || is_calling);
}

}  // namespace

Result<std::vector<Finding>> Lint(Conversation& conversation, bool is_calling) {
  const bool is_listening = conversation.service().HasApp(conversation.app_id());
  Findings findings;
  for (const Check& check : kChecks) {
    if (!IsDue(check.when, is_listening, is_calling)) continue;
    Result<Findings> found = check.run(conversation);
    if (!found) return Fail(Error{"The page can't be checked. " + found.error().message, found.error().kind});
    Append(findings, std::move(*found));
  }
  return findings;
}

}  // namespace corvis::kit
