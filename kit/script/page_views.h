// Looks at the page between the steps of a script, for reports that show it.
#ifndef CORVIS_KIT_SCRIPT_PAGE_VIEWS_H_
#define CORVIS_KIT_SCRIPT_PAGE_VIEWS_H_

#include <map>
#include <string>

#include "app/conversation.h"
#include "app/item_places.h"
#include "events/events.h"

namespace corvis::kit {

// A page that does not respond has no views; that is no failure.
class PageViews {
 public:
  // Keeps the references, and emits the page's console lines as long as it exists.
  PageViews(Conversation& conversation, EventSink& events);
  ~PageViews();
  PageViews(const PageViews&) = delete;
  PageViews& operator=(const PageViews&) = delete;

  // Emits the requests made since the last call. All console lines written until then have been emitted, too.
  void Listen();
  // Emits a view in any case, at the start of a test, whose events thus don't depend on others.
  void Begin();
  // Emits a view unless it equals the last one.
  void Look();
  // Looks if something in the page has changed since the last look.
  void LookForChange();

 private:
  void TakeRequests(const std::string& value);
  PagePicture Picture();

  Conversation& conversation_;
  EventSink& events_;
  // The page whose requests have been emitted, and their number.
  double origin_ = 0;
  double requests_ = 0;
  std::string activity_;
  PageSeen last_;
  // The pictures' data URLs, by the checksums of the screenshots.
  std::map<std::string, std::string> pictures_;
  size_t picture_bytes_ = 0;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_SCRIPT_PAGE_VIEWS_H_
