// Combines the engine's console lines with the reports of the page's script.
#include "web-process/load_failures.h"

#include <algorithm>
#include <initializer_list>
#include <regex>
#include <string_view>
#include <utility>

#include "requests_script.h"

namespace corvis::tv {

namespace {

bool IsDefaultIcon(std::string_view url) {
  constexpr std::string_view kName = "/favicon.ico";
  return url.size() > kName.size() && url.substr(url.size() - kName.size()) == kName;
}

using JscValue = nurvo::GObjectPtr<JSCValue>;

// Reports of one failure arrive within a few turns of the main loop.
constexpr guint kReportDelayMs = 100;
// The maximum number of script positions that are stored.
constexpr size_t kMostRequests = 2000;

// Extracts the reason from lines such as "Failed to load resource: the server responded with a status of 404
// (Not Found)".
std::string ReasonIn(const std::string& line) {
  static const std::regex kStart("^Failed to load resource: ");
  static const std::regex kStatus(R"(the server responded with a status of (\d+) \((.*)\))");
  return std::regex_replace(std::regex_replace(line, kStart, ""), kStatus, "status $1 ($2)");
}

void AddFunction(JSCContext* context, JSCValue* native, const char* name, GCallback call, gpointer failures,
                 std::initializer_list<GType> types, GType result = G_TYPE_NONE) {
  std::vector<GType> parameters = types;
  const JscValue function(jsc_value_new_functionv(context, name, call, failures, nullptr, result,
                                                  static_cast<guint>(parameters.size()), parameters.data()));
  jsc_value_object_set_property(native, name, function.get());
}

}  // namespace

// The functions that the page's script calls.
struct LoadFailures::Native {
  static void Asked(const char* url, const char* where, gpointer failures) {
    static_cast<LoadFailures*>(failures)->TakeRequest(url, where);
  }
  static void Failed(const char* url, const char* reason, const char* where, gpointer failures) {
    static_cast<LoadFailures*>(failures)->TakeFailure(url, reason, where);
  }
  static void Blocked(const char* url, const char* reason, const char* document, gpointer failures) {
    static_cast<LoadFailures*>(failures)->TakeReason(url, reason, document);
  }
  static char* Url(const char* url, gpointer failures) {
    return g_strdup(static_cast<LoadFailures*>(failures)->places_.ShortUrl(url).c_str());
  }
  static char* Place(const char* place, gpointer failures) {
    return g_strdup(static_cast<LoadFailures*>(failures)->places_.Read(place).c_str());
  }
};

void LoadFailures::Watch(JSCContext* context, bool is_main_frame) {
  const JscValue start(jsc_context_evaluate_with_source_uri(context, kRequestsScript, -1, "requests.js", 1));
  const JscValue native(jsc_value_new_object(context, nullptr, nullptr));
  const GType text = G_TYPE_STRING;
  AddFunction(context, native.get(), "asked", G_CALLBACK(Native::Asked), this, {text, text});
  AddFunction(context, native.get(), "failed", G_CALLBACK(Native::Failed), this, {text, text, text});
  AddFunction(context, native.get(), "blocked", G_CALLBACK(Native::Blocked), this, {text, text, text});
  AddFunction(context, native.get(), "url", G_CALLBACK(Native::Url), this, {text}, text);
  AddFunction(context, native.get(), "place", G_CALLBACK(Native::Place), this, {text}, text);
  JscValue find(jsc_value_function_call(start.get(), JSC_TYPE_VALUE, native.get(), G_TYPE_NONE));
  jsc_context_clear_exception(context);
  if (is_main_frame) find_in_document_ = std::move(find);
}

void LoadFailures::Forget() {
  // The document that could be queried is gone.
  find_in_document_.reset();
  WriteAll();
  requests_.clear();
  written_.clear();
  lines_of_elements_.clear();
}

void LoadFailures::TakeRequest(const std::string& url, const std::string& where) {
  if (requests_.size() >= kMostRequests) requests_.clear();
  requests_[url] = where;
}

void LoadFailures::TakeEngineLine(const std::string& url, const std::string& text) {
  if (!places_.is_reading()) TakeReason(url, ReasonIn(text), "");
}

void LoadFailures::TakeReason(const std::string& url, const std::string& reason,
                              const std::string& document) {
  const auto known = std::find_if(waiting_.begin(), waiting_.end(), [&url](const Failure& failure) {
    return failure.url == url && failure.reason.empty();
  });
  if (known == waiting_.end()) return Add({url, reason, "", document});
  known->reason = reason;
}

void LoadFailures::TakeFailure(const std::string& url, const std::string& reason, const std::string& where) {
  const auto known = std::find_if(waiting_.begin(), waiting_.end(), [&url](const Failure& failure) {
    return failure.url == url && failure.where.empty();
  });
  const auto written = written_.find(url);
  if (known != waiting_.end()) {
    known->where = where;
  } else if (written != written_.end() && written->second > 0) {
    --written->second;
  } else {
    Add({url, reason, where, ""});
  }
}

void LoadFailures::Add(Failure failure) {
  waiting_.push_back(std::move(failure));
  if (!timer_.is_running()) timer_.Start(kReportDelayMs);
}

void LoadFailures::Flush() {
  const auto known = std::stable_partition(waiting_.begin(), waiting_.end(),
                                           [](const Failure& failure) { return failure.reason.empty(); });
  const std::vector<Failure> ready(known, waiting_.end());
  waiting_.erase(known, waiting_.end());
  for (const Failure& failure : ready) Write(failure);
}

void LoadFailures::WriteAll() {
  for (const Failure& failure : std::exchange(waiting_, {})) Write(failure);
}

void LoadFailures::Write(const Failure& failure) {
  std::string where = failure.where;
  if (where.empty()) {
    ++written_[failure.url];
    where = WhereAsked(failure.url);
  }
  if (where.empty()) where = failure.document;
  // The engine itself requests the icon of a page: no element and no line of a script did.
  if (where.find_first_of("<:") == std::string::npos && IsDefaultIcon(failure.url)) return;
  const std::string reason =
      failure.reason.empty() ? "the engine refuses it, or its content can't be used" : failure.reason;
  const std::string line = "Can't load " + places_.ShortUrl(failure.url) + ": " + reason +
                           (where.empty() ? "" : "; asked for by " + where) + ".";
  // The engine may try, and report, the request of an element several times.
  if (where[0] == '<' && !lines_of_elements_.insert(line).second) return;
  // Other lines of the engine are complete sentences.
  console_("error", failure.url.empty() ? reason : line, "page");
}

std::string LoadFailures::WhereAsked(const std::string& url) const {
  const auto request = requests_.find(url);
  if (request != requests_.end() && !request->second.empty()) return places_.Read(request->second);
  if (!find_in_document_ || jsc_value_is_function(find_in_document_.get()) == FALSE) return "";
  const JscValue where(
      jsc_value_function_call(find_in_document_.get(), G_TYPE_STRING, url.c_str(), G_TYPE_NONE));
  const nurvo::GText text(jsc_value_to_string(where.get()));
  return text.get();
}

}  // namespace corvis::tv
