// Sends several console lines in one message.
#include "web-process/console_post.h"

#include "support/messages.h"

namespace corvis::tv {

namespace {
constexpr guint kDelayMs = 5;
// No line is lost if nobody asks for a long time.
constexpr size_t kMostLines = 4096;
}  // namespace

void ConsolePost::Take(const std::string& level, const std::string& text, const std::string& source) {
  lines_.emplace_back(
      g_variant_ref_sink(g_variant_new(kConsoleLineType, level.c_str(), text.c_str(), source.c_str())));
  if (source != "api" || lines_.size() == kMostLines) return Flush();
  if (is_api_followed_ && !timer_.is_running()) timer_.Start(kDelayMs);
}

void ConsolePost::Flush() {
  if (lines_.empty()) return;
  GVariantBuilder lines;
  g_variant_builder_init(&lines, G_VARIANT_TYPE(kConsoleType));
  for (const nurvo::GVariantPtr& line : lines_) g_variant_builder_add_value(&lines, line.get());
  lines_.clear();
  WebKitUserMessage* message = webkit_user_message_new(kConsoleMessage, g_variant_builder_end(&lines));
  webkit_web_page_send_message_to_view(page_, message, nullptr, nullptr, nullptr);
}

}  // namespace corvis::tv
