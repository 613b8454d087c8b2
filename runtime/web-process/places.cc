// Maps positions with a script in an isolated world, which is loaded on first use.
#include "web-process/places.h"

#include <utility>

#include "source-map_script.h"
#include "source-maps_script.h"
#include "web-process/main_frame.h"

namespace corvis::tv {

namespace {

using JscValue = nurvo::GObjectPtr<JSCValue>;

// Never destroyed, like WebKit's own world.
WebKitScriptWorld* OwnWorld() {
  static WebKitScriptWorld* const world = webkit_script_world_new_with_name("corvis");
  return world;
}

JscValue LoadMapper(WebKitWebPage* page) {
  const nurvo::GObjectPtr<JSCContext> context(
      webkit_frame_get_js_context_for_script_world(MainFrame(page), OwnWorld()));
  const JscValue library(
      jsc_context_evaluate_with_source_uri(context.get(), kSourceMapLibrary, -1, "source-map.js", 1));
  const JscValue start(
      jsc_context_evaluate_with_source_uri(context.get(), kSourceMapsScript, -1, "source-maps.js", 1));
  const JscValue argument(jsc_context_get_value(context.get(), "sourceMap"));
  JscValue mapper(jsc_value_function_call(start.get(), JSC_TYPE_VALUE, argument.get(), G_TYPE_NONE));
  jsc_context_clear_exception(context.get());
  return mapper;
}

}  // namespace

std::string Places::ShortUrl(const std::string& url) const {
  const bool is_served = origin_.find(".localhost:") != std::string::npos;
  const std::string start = origin_ + "/";
  if (!is_served || url.compare(0, start.size(), start) != 0) return url;
  const std::string rest = url.substr(start.size());
  const bool is_file = !rest.empty() && std::string(":?#").find(rest[0]) == std::string::npos;
  return is_file ? rest : "index.html" + rest;
}

std::string Places::Mapped(const std::string& place) {
  if (!map_) map_ = LoadMapper(page_);
  if (jsc_value_is_function(map_.get()) == FALSE) return place;
  const JscValue found(jsc_value_function_call(map_.get(), G_TYPE_STRING, place.c_str(), G_TYPE_NONE));
  const nurvo::GText text(jsc_value_to_string(found.get()));
  return text.get();
}

std::string Places::Read(const std::string& place) {
  if (std::exchange(is_reading_, true)) return place;
  const std::string found = Mapped(place);
  is_reading_ = false;
  return ShortUrl(found);
}

}  // namespace corvis::tv
