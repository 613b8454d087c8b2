// Looking into the page that a view shows.
#ifndef CORVIS_RUNTIME_LAUNCHER_PAGE_QUERIES_H_
#define CORVIS_RUNTIME_LAUNCHER_PAGE_QUERIES_H_

#include <webkit2/webkit2.h>

#include <functional>
#include <string>

namespace corvis::tv {

// Takes the outcome of something asked of the page: the result, and an error sentence that is empty on
// success. Called once, on the main loop.
using ResultCallback = std::function<void(const std::string& result, const std::string& error)>;

// Evaluates an expression in the page's main frame; gives its value as JSON text, "null" where there is none.
void EvaluateInPage(WebKitWebView* view, const std::string& expression, ResultCallback done);

// Gives what the view shows as the bytes of a PNG picture.
void DrawPage(WebKitWebView* view, ResultCallback done);

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_LAUNCHER_PAGE_QUERIES_H_
