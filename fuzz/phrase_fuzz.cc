// Fuzzes phrases, raw commands, and the list of items in a page's answer.
#include <algorithm>
#include <chrono>
#include <vector>

#include "app/items.h"
#include "language/phrasebook.h"
#include "language/raw_command.h"
#include "require.h"
#include "service/bundles.h"

namespace {

using namespace corvis::kit;

// Keys must be unique and not empty, so that a bundle can be built from them.
void RequireEntries(const Command& command) {
  if (!command.is_bundle) return;
  Require(!command.entries.empty(), "a bundle has entries");
  Require(!EncodeEntries(command.entries).empty(), "a bundle can be sent");
}

std::vector<Phrasebook> AllLanguages() {
  std::vector<Phrasebook> all;
  for (const std::string& tag : BuiltInLanguages()) all.push_back(Phrasebook::Open(tag, {}).value());
  return all;
}

void Say(const std::string& text, const Phrasebook& phrases) {
  const auto begin = std::chrono::steady_clock::now();
  auto understood = phrases.Understand(text);
  // Linear in the length of the text, even with sanitizers on a busy machine.
  const auto limit = std::chrono::milliseconds(200 + text.size());
  Require(std::chrono::steady_clock::now() - begin < limit, "a text is understood in time");
  Require(phrases.Folded(phrases.Folded(text)) == phrases.Folded(text), "folding once is enough");
  if (!understood) return;
  Require(FindAction(understood->command.action) != nullptr, "a phrase becomes an action of the table");
  RequireEntries(understood->command);
  Require(phrases.Explain(text).understood.has_value(), "what is understood is explained");
  understood->SetItem(1);
}

void Type(const std::string& text) {
  const auto command = ParseRawCommand(text);
  if (!command) return Require(!command.error().message.empty(), "an error has a sentence");
  Require(text.compare(0, command->action.size(), command->action) == 0, "the action comes first");
  RequireEntries(*command);
  DescribeData(*command);
  UnknownActionWarning(*command);
}

void ShowItems(const std::string& text, const Phrasebook& phrases) {
  const auto list = ReadItems(text);
  if (!list) return;
  Require(!ItemTable(*list).empty(), "a list can be shown");
  Require(CompareItems(*list, *list).empty(), "a list does not differ from itself");
  if (!list->items.empty())
    Require(!ItemsTitled(*list, list->items[0].title, phrases).empty(), "a title is found");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const std::vector<Phrasebook> kLanguages = AllLanguages();
  const std::string text = FuzzText(data, size);
  for (const Phrasebook& phrases : kLanguages) Say(text, phrases);
  Type(text);
  ShowItems(text, kLanguages[0]);
  return 0;
}
