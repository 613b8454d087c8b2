// Asks the runtime for the items, the screenshot and the requests of the page.
#include "script/page_views.h"

#include <glib.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <tuple>
#include <utility>

#include "app/compact_picture.h"
#include "app/json_text.h"
#include "app/page_script.h"
#include "nurvo_desktop/owned.h"
#include "page_peek_script.h"
#include "service/main_loop.h"

namespace corvis::kit {

namespace {

using Json = nlohmann::json;

std::string Checksum(const std::string& bytes) {
  constexpr size_t kDigits = 16;
  const nurvo::Owned<char, g_free> sum(g_compute_checksum_for_data(
      G_CHECKSUM_SHA256, reinterpret_cast<const guchar*>(bytes.data()), bytes.size()));
  return std::string(sum.get()).substr(0, kDigits);
}

std::string DataUrl(const std::string& webp) {
  const nurvo::Owned<char, g_free> base64(
      g_base64_encode(reinterpret_cast<const guchar*>(webp.data()), webp.size()));
  return std::string("data:image/webp;base64,") + base64.get();
}

// The size of the next picture: a share of what is left, so that all take 20 MB at most in base64, whether
// few of them or a thousand.
size_t PictureLimit(size_t used) {
  constexpr size_t kAll = 14'000'000;
  constexpr size_t kShare = 250;
  constexpr size_t kLeast = 4'000;
  return std::max(kLeast, (kAll - std::min(kAll, used)) / kShare);
}

std::vector<SeenItem> SeenItems(const ItemPlaces& places) {
  std::vector<SeenItem> seen;
  for (const ItemPlace& place : places.places) {
    const Item& item = place.item;
    // An item that is not on the screen has no size.
    const double width = item.is_shown ? item.w : 0;
    const double height = item.is_shown ? item.h : 0;
    seen.push_back(
        {item.number, item.title, place.x, place.y, width, height, item.is_focused, item.is_visible});
  }
  return seen;
}

bool operator==(const SeenItem& a, const SeenItem& b) {
  const auto values = [](const SeenItem& item) {
    return std::tie(item.number, item.title, item.x, item.y, item.width, item.height, item.is_focused,
                    item.is_visible);
  };
  return values(a) == values(b);
}

bool operator==(const PageSeen& a, const PageSeen& b) {
  return a.picture.id == b.picture.id && std::pair(a.width, a.height) == std::pair(b.width, b.height) &&
         std::equal(a.items.begin(), a.items.end(), b.items.begin(), b.items.end(),
                    [](const SeenItem& one, const SeenItem& other) { return one == other; });
}

// Members of an object of the page, which may hold anything.
double Number(const Json& object, const char* name, double most) {
  const auto found = object.find(name);
  return found != object.end() && found->is_number() ? std::clamp(found->get<double>(), 0.0, most) : 0;
}
std::string Text(const Json& object, const char* name) {
  const auto found = object.find(name);
  return found != object.end() && found->is_string() ? found->get<std::string>() : "";
}

RequestMade RequestOf(const Json& entry) {
  constexpr double kMostTime = 1e9;
  constexpr double kMostStatus = 999;
  const std::chrono::duration<double, std::milli> duration(Number(entry, "ms", kMostTime));
  return {Text(entry, "url"), Text(entry, "kind"), static_cast<int>(Number(entry, "status", kMostStatus)),
          std::chrono::duration_cast<std::chrono::microseconds>(duration)};
}

}  // namespace

PageViews::PageViews(Conversation& conversation, EventSink& events)
    : conversation_(conversation), events_(events) {
  conversation.set_console_recorder([this](const auto& level, const auto& text, const auto& source) {
    if (source == "page") events_.Take(ConsoleWritten{level, text, source});
  });
}

PageViews::~PageViews() {
  conversation_.set_console_recorder(nullptr);
}

void PageViews::Listen() {
  if (IsInterrupted()) return;
  const Json known = {{"origin", origin_}, {"count", requests_}};
  const auto value =
      conversation_.runtime().Evaluate(CallInPage(kPagePeek, "pageRequests", Json::array({known})));
  if (value) TakeRequests(*value);
}

void PageViews::TakeRequests(const std::string& value) {
  constexpr double kMostOrigin = 1e15;
  constexpr double kMostRequests = 1e6;
  const Result<Json> parsed = ParseJson(value);
  if (!parsed || !parsed->is_object()) return;
  origin_ = Number(*parsed, "origin", kMostOrigin);
  requests_ = Number(*parsed, "count", kMostRequests);
  for (const Json& entry : parsed->value("requests", Json::array())) {
    if (entry.is_object()) events_.Take(RequestOf(entry));
  }
}

void PageViews::Begin() {
  last_ = {};
  Look();
}

void PageViews::Look() {
  if (IsInterrupted()) return;
  activity_ = conversation_.runtime().Activity().value_or("");
  const Result<ItemList> items = conversation_.LookForItems();
  if (!items) return;
  const Result<ItemPlaces> places = conversation_.PlacesOf(*items);
  if (!places) return;
  PageSeen seen{places->window_width, places->window_height, SeenItems(*places), Picture()};
  if (seen == last_) return;
  last_ = seen;
  events_.Take(std::move(seen));
}

void PageViews::LookForChange() {
  if (IsInterrupted()) return;
  const Result<std::string> now = conversation_.runtime().Activity();
  if (now && *now != activity_) Look();
}

PagePicture PageViews::Picture() {
  const Result<std::string> screenshot = conversation_.runtime().Screenshot();
  if (!screenshot) return {};
  const std::string id = Checksum(*screenshot);
  if (const auto known = pictures_.find(id); known != pictures_.end()) return {id, known->second};
  const Result<std::string> compact = CompactPicture(*screenshot, PictureLimit(picture_bytes_));
  if (!compact) return {};
  picture_bytes_ += compact->size();
  return {id, pictures_[id] = DataUrl(*compact)};
}

}  // namespace corvis::kit
