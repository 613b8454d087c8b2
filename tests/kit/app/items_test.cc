// Reading the items of a screen, finding and comparing them.
#include "app/items.h"

#include <gmock/gmock.h>

namespace corvis::kit {
namespace {

// "number title" with "*" for the focused and "-" for hidden ones; "none" when the answer is no list.
std::string ReadList(const std::string& answer) {
  const auto list = ReadItems(answer);
  if (!list) return "none";
  std::string text = list->is_own ? "own" : "";
  for (const Item& item : list->items) {
    text.append(text.empty() ? "" : " ").append(std::to_string(item.number)).append(item.title);
    text.append(item.is_focused ? "*" : "").append(item.is_visible ? "" : "-");
  }
  return text;
}

TEST(Items, AreReadFromWhateverAPageAnswers) {
  const std::pair<std::string, const char*> rows[] = {
      {"[]", ""},
      {R"([{"id":3,"title":"Play","focused":true},{"id":4,"title":"é","visible":false}])", "3Play* 4é-"},
      {R"([{"positionX":5,"positionY":6,"title":"A","alias":[],"bFocused":true},{"title":"B"}])",
       "own 0A* 1B"},
      {R"([{"id":"3","title":7,"focused":1,"visible":null}])", "0"},
      {R"([{"id":1e300},{"id":-5},{"id":2.0}])", "0 0 2"},
      {R"([1])", "none"},
      {R"({"id":3})", "none"},
      {"success", "none"},
      {"", "none"},
      {"[{\"title\":\"\xff\"}]", "none"},
      {"[{\"alias\":" + std::string(50'000, '[') + std::string(50'000, ']') + "}]", "none"},
  };
  for (const auto& [answer, read] : rows) EXPECT_EQ(ReadList(answer), read) << answer.substr(0, 100);
}

ItemList Titled(std::initializer_list<std::pair<long, const char*>> items) {
  ItemList list;
  for (const auto& [number, title] : items) {
    list.items.emplace_back();
    list.items.back().number = number;
    list.items.back().title = title;
  }
  return list;
}

TEST(Items, AreFoundByTheirTitle) {
  const Phrasebook phrases = Phrasebook::English();
  const ItemList list = Titled({{0, "Play"}, {1, "Play all"}, {2, "Iron  Rain!"}, {3, "PLAY"}, {4, ""}});
  const std::pair<const char*, std::vector<long>> rows[] = {
      {"play", {0, 3}}, {"play a", {1}}, {"iron rain", {2}}, {"all", {1}},
      {"r", {2}},       {"sea", {}},     {"?", {4}}};
  for (const auto& [title, numbers] : rows) {
    std::vector<long> found;
    for (const Item& item : ItemsTitled(list, title, phrases)) found.push_back(item.number);
    EXPECT_EQ(found, numbers) << title;
  }
  EXPECT_TRUE(ItemsTitled(Titled({{0, "Play"}}), "?", phrases).empty()) << "an empty title is in every other";
}

TEST(Items, AreComparedByTitle) {
  const ItemList before = Titled({{0, "A"}, {1, "B"}, {2, "A"}, {3, "C"}});
  const ItemList now = Titled({{0, "A"}, {1, "D"}, {2, "B"}});
  EXPECT_EQ(Describe(CompareItems(before, now)),
            "1  appeared  D\n"
            "1 -> 2  moved     B\n"
            "2  vanished  A\n"
            "3  vanished  C\n");
  EXPECT_EQ(Describe(CompareItems(now, now)), "No item changed its number.\n");
}

}  // namespace
}  // namespace corvis::kit
