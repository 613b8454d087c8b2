// Places in a page's scripts, as their author knows them.
#ifndef CORVIS_RUNTIME_WEB_PROCESS_PLACES_H_
#define CORVIS_RUNTIME_WEB_PROCESS_PLACES_H_

#include <webkit2/webkit-web-extension.h>

#include <string>

#include "nurvo_desktop/glib_ptr.h"

namespace corvis::tv {

// Of the documents that a page shows, one after the other.
class Places {
 public:
  // `origin` is the application's.
  Places(WebKitWebPage* page, std::string origin) : page_(page), origin_(std::move(origin)) {}

  // A new document begins.
  void Forget() { map_.reset(); }
  // A place, URL:LINE:COLUMN, by the script's source map if it has one, which is read now. URLs of a folder
  // that is served are paths in it.
  std::string Read(const std::string& place);
  // A URL likewise.
  std::string ShortUrl(const std::string& url) const;
  // Whether it is reading a map now. What can't be loaded then is no matter of the page's.
  bool is_reading() const { return is_reading_; }

 private:
  std::string Mapped(const std::string& place);

  WebKitWebPage* page_;
  std::string origin_;
  bool is_reading_ = false;
  // The script's function; null before the first place.
  nurvo::GObjectPtr<JSCValue> map_;
};

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_WEB_PROCESS_PLACES_H_
