// Maps positions and URLs in a page to those in the author's source.
#ifndef CORVIS_RUNTIME_WEB_PROCESS_PLACES_H_
#define CORVIS_RUNTIME_WEB_PROCESS_PLACES_H_

#include <webkit2/webkit-web-extension.h>

#include <string>

#include "nurvo_desktop/glib_ptr.h"

namespace corvis::tv {

// One object per page, for its successive documents.
class Places {
 public:
  // `origin` is the application's.
  Places(WebKitWebPage* page, std::string origin) : page_(page), origin_(std::move(origin)) {}

  // Call this when a new document starts.
  void Forget() { map_.reset(); }
  // Maps a position, URL:LINE:COLUMN, with the script's source map, if it has one, which is loaded now. URLs
  // of the served folder become paths in it.
  std::string Read(const std::string& place);
  // Shortens a URL of the served folder to a path in it.
  std::string ShortUrl(const std::string& url) const;
  // Whether a map is being loaded. Load failures during that time are not the page's.
  bool is_reading() const { return is_reading_; }

 private:
  std::string Mapped(const std::string& place);

  WebKitWebPage* page_;
  std::string origin_;
  bool is_reading_ = false;
  // The script's function; null before first use.
  nurvo::GObjectPtr<JSCValue> map_;
};

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_WEB_PROCESS_PLACES_H_
