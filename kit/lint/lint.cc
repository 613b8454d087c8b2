// Runs the checks: first those inside the page, then those that need the voice service.
#include "lint/lint.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <map>
#include <nlohmann/json.hpp>

#include "app/item_picture.h"
#include "app/item_places.h"
#include "app/page_script.h"
#include "page_checks_script.h"
#include "watch_callbacks_script.h"

namespace corvis::kit {

namespace {

using Findings = std::vector<Finding>;
using Json = nlohmann::json;

void Append(Findings& findings, Findings more) {
  findings.insert(findings.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
}

bool IsBox(const Json& value) {
  return value.is_array() && value.size() == 4 &&
         std::all_of(value.begin(), value.end(), [](const Json& side) { return side.is_number(); });
}

// Whether the value has the form of a finding. The page may have replaced functions that the checks use.
bool IsFinding(const Json& value) {
  const char* members[] = {"rule", "sentence", "where"};
  return value.is_object() &&
         std::all_of(
             std::begin(members), std::end(members),
             [&value](const char* member) { return value.contains(member) && value[member].is_string(); }) &&
         value.contains("boxes") && std::all_of(value["boxes"].begin(), value["boxes"].end(), IsBox);
}

Result<Findings> CheckPage(Conversation& conversation) {
  const auto value = conversation.runtime().Evaluate(CallAboutItems(kPageChecks, "pageChecks"));
  if (!value) return Fail(value.error());
  Findings findings;
  const Json parsed = Json::parse(*value, nullptr, /*allow_exceptions=*/false);
  if (!parsed.is_array() || !std::all_of(parsed.begin(), parsed.end(), IsFinding))
    return Fail("It returned no list of findings. Does it replace built-in functions of the browser?");
  for (const Json& finding : parsed)
    findings.push_back({finding["rule"], finding["sentence"], finding["where"], finding["boxes"]});
  return findings;
}

Result<Findings> CheckListening(Conversation& conversation) {
  if (conversation.service().HasApp(conversation.app_id())) return Findings();
  return Findings{{"listen", "The page has not called listen(). " + conversation.WhyItMayNotListen(), ""}};
}

Findings CheckTitles(const ItemPlaces& places) {
  std::map<std::string, std::vector<ItemPlace>> titles;
  for (const ItemPlace& place : places.places) {
    if (place.item.is_shown) titles[place.item.title].push_back(place);
  }
  Findings findings;
  for (const auto& [title, same] : titles) {
    if (same.size() == 1) continue;
    Finding finding{"same-title", fmt::format("Several items are called \"{}\".", title), "items"};
    for (const auto& [item, x, y] : same) {
      finding.where += fmt::format(" {}", item.number);
      finding.boxes.push_back({x, y, item.w, item.h});
    }
    findings.push_back(std::move(finding));
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
  const Result<ItemPlaces> places = conversation.PlacesOf(*list);
  if (!places) return Fail(places.error());
  Findings findings = CheckTitles(*places);
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

// A finding for each callback, if it has none yet, that is asynchronous by its text or has returned a
// promise.
Result<Findings> CheckPromises(Conversation& conversation) {
  const auto names = conversation.runtime().Evaluate("window[Symbol.for('corvis.newAsynchronous')]()");
  // A page of another origin has no API; after ACTION_EXIT there may be no page.
  const Json parsed = names ? Json::parse(*names, nullptr, /*allow_exceptions=*/false) : Json::array();
  Findings findings;
  for (const Json& name : parsed.is_array() ? parsed : Json::array()) {
    if (!name.is_string()) continue;
    findings.push_back(
        {"promise",
         "The callback returns a promise, for which voice does not wait: its answer is \"{}\". "
         "Return true, false or a text at once.",
         name});
  }
  return findings;
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
    if (!is_own) continue;
    Append(findings, CheckCallback(conversation, action));
    Append(findings, *CheckPromises(conversation));
  }
  return findings;
}

struct Check {
  enum class When { kAlways, kListening, kCalling } when;
  Result<Findings> (*run)(Conversation& conversation);
};

constexpr Check kChecks[] = {
    {Check::When::kAlways, CheckListening},  {Check::When::kAlways, CheckPage},
    {Check::When::kAlways, CheckPromises},   {Check::When::kListening, CheckItems},
    {Check::When::kCalling, CheckCallbacks},
};

bool IsDue(Check::When when, bool is_listening, bool is_calling) {
  if (when == Check::When::kAlways) return true;
  return is_listening && (when == Check::When::kListening || is_calling);
}

}  // namespace

const char* LintPageScript() {
  return kWatchCallbacks;
}

Result<std::string> PictureOf(Conversation& conversation, const std::vector<Finding>& findings) {
  const Result<std::string> width = conversation.runtime().Evaluate("window.innerWidth");
  if (!width) return width;
  const Result<std::string> picture = conversation.runtime().Screenshot();
  if (!picture) return picture;
  std::vector<Mark> marks;
  for (size_t i = 0; i < findings.size(); ++i) {
    for (const auto& [x, y, w, h] : findings[i].boxes)
      marks.push_back({Mark::Kind::kProblem, std::to_string(i + 1), x, y, w, h});
  }
  return DrawMarks(*picture, marks, std::atof(width->c_str()));
}

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
