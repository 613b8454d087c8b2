// Lines in one message.
#include "web-process/console_post.h"

#include "support/messages.h"

namespace corvis::tv {

namespace {
constexpr guint kDelayMs = 5;
}  // namespace

ConsolePost::~ConsolePost() {
  if (timer_ != 0) g_source_remove(timer_);
  for (GVariant* line : lines_) g_variant_unref(line);
}

void ConsolePost::Take(const std::string& level, const std::string& text, const std::string& source) {
  lines_.push_back(
      g_variant_ref_sink(g_variant_new(kConsoleLineType, level.c_str(), text.c_str(), source.c_str())));
  if (source != "api") return Send();
  if (timer_ != 0) return;
  timer_ = g_timeout_add(
      kDelayMs,
      [](gpointer post) {
        static_cast<ConsolePost*>(post)->timer_ = 0;
        static_cast<ConsolePost*>(post)->Send();
        return G_SOURCE_REMOVE;
      },
      this);
}

void ConsolePost::Send() {
  GVariant* lines = g_variant_new_array(G_VARIANT_TYPE(kConsoleLineType), lines_.data(), lines_.size());
  for (GVariant* line : lines_) g_variant_unref(line);
  lines_.clear();
  WebKitUserMessage* message = webkit_user_message_new(kConsoleMessage, lines);
  webkit_web_page_send_message_to_view(page_, message, nullptr, nullptr, nullptr);
}

}  // namespace corvis::tv
