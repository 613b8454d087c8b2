// What is said or typed to the voice service, and the list of items that a page answers, whatever their text.
#include <algorithm>

#include "app/items.h"
#include "language/phrases.h"
#include "language/raw_command.h"
#include "require.h"
#include "service/bundles.h"

namespace {

using namespace corvis::kit;

// Keys come out distinct and not empty, so that a bundle can be made of them.
void RequireEntries(const Command& command) {
  if (!command.is_bundle) return;
  Require(!command.entries.empty(), "a bundle has entries");
  Require(!EncodeEntries(command.entries).empty(), "a bundle can be sent");
}

void Say(const std::string& text) {
  const auto command = CommandOf(text);
  if (!command) return;
  Require(FindAction(command->action) != nullptr, "a phrase becomes an action of the table");
  RequireEntries(*command);
}

void Type(const std::string& text) {
  const auto command = ParseRawCommand(text);
  if (!command) return Require(!command.error().message.empty(), "an error has a sentence");
  Require(text.compare(0, command->action.size(), command->action) == 0, "the action comes first");
  RequireEntries(*command);
  DescribeData(*command);
  UnknownActionWarning(*command);
}

void ShowItems(const std::string& text) {
  const auto list = ReadItems(text);
  if (!list) return;
  Require(!ItemTable(*list).empty(), "a list can be shown");
  Require(CompareItems(*list, *list).empty(), "a list does not differ from itself");
  if (!list->items.empty()) Require(!ItemsTitled(*list, list->items[0].title).empty(), "a title is found");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text = FuzzText(data, size);
  Say(text);
  Type(text);
  ShowItems(text);
  return 0;
}
