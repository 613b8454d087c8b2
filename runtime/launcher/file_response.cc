// Handles validators and ranges, and sends a file in pieces.
#include "launcher/file_response.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <string_view>

#include "launcher/content_type.h"
#include "nurvo_desktop/glib_ptr.h"

namespace corvis::tv {

namespace {

using nurvo::GText;
using DateTimePtr = nurvo::Owned<GDateTime, g_date_time_unref>;

constexpr goffset kPieceSize = 1 << 18;

// The part of a file that is sent. Its message owns it from the first piece to the last.
class FilePart {
 public:
  FilePart(int file, SoupRange range) : file_(file), at_(range.start), end_(range.end + 1) {}
  ~FilePart() { close(file_); }
  FilePart(const FilePart&) = delete;
  FilePart& operator=(const FilePart&) = delete;

  static void OnPieceWritten(SoupServerMessage* message, FilePart* part) {
    part->AppendPiece(message);
    soup_server_message_unpause(message);
  }

  void AppendPiece(SoupServerMessage* message) {
    SoupMessageBody* body = soup_server_message_get_response_body(message);
    if (at_ >= end_) return soup_message_body_complete(body);
    const auto size = static_cast<gsize>(std::min(end_ - at_, kPieceSize));
    auto* const piece = static_cast<guchar*>(g_malloc(size));
    const ssize_t got = pread(file_, piece, size, at_);
    // The file has been truncated, so the response can't be completed; closing the connection tells the
    // client.
    if (got <= 0) g_socket_close(soup_server_message_get_socket(message), nullptr);
    at_ += std::max<goffset>(got, 0);
    soup_message_body_append_take(body, piece, static_cast<gsize>(std::max<ssize_t>(got, 0)));
  }

 private:
  int file_;
  goffset at_;
  goffset end_;
};

// The HTTP validators of a file, which identify its version.
struct Validators {
  std::string entity_tag;
  std::string last_modified;
  gint64 modified = 0;
};

Validators ValidatorsOf(const struct stat& file) {
  const DateTimePtr time(g_date_time_new_from_unix_utc(file.st_mtim.tv_sec));
  const GText text(soup_date_time_to_string(time.get(), SOUP_DATE_HTTP));
  // Seconds are too coarse for a file that is rewritten while a page uses it.
  const std::string tag = "\"" + std::to_string(file.st_mtim.tv_sec) + "." +
                          std::to_string(file.st_mtim.tv_nsec) + "-" + std::to_string(file.st_size) + "\"";
  return {tag, text.get(), file.st_mtim.tv_sec};
}

const char* HeaderOf(SoupServerMessage* message, const char* name) {
  return soup_message_headers_get_list(soup_server_message_get_request_headers(message), name);
}

bool IsUnchanged(SoupServerMessage* message, const Validators& validators) {
  if (const char* tags = HeaderOf(message, "If-None-Match"))
    return std::string_view(tags).find(validators.entity_tag) != std::string_view::npos;
  const char* since = HeaderOf(message, "If-Modified-Since");
  if (since == nullptr) return false;
  const DateTimePtr time(soup_date_time_new_from_http_string(since));
  return time && validators.modified <= g_date_time_to_unix(time.get());
}

// Whether If-Range, if present, matches the current file.
bool IsRangeCurrent(SoupServerMessage* message, const Validators& validators) {
  const char* state = HeaderOf(message, "If-Range");
  return state == nullptr || validators.entity_tag == state || validators.last_modified == state;
}

// Sets the status for the requested range and returns the bytes to send. A range that starts at the end of
// the file can't be satisfied. A request for several ranges gets the whole file.
SoupRange ChooseRange(SoupServerMessage* message, goffset size, const Validators& validators) {
  SoupRange whole{0, size - 1};
  SoupMessageHeaders* asked = soup_server_message_get_request_headers(message);
  SoupRange* ranges = nullptr;
  int count = 0;
  const bool is_range = soup_server_message_get_method(message) == SOUP_METHOD_GET &&
                        IsRangeCurrent(message, validators) &&
                        soup_message_headers_get_ranges(asked, size, &ranges, &count) != FALSE;
  soup_server_message_set_status(message, SOUP_STATUS_OK, nullptr);
  if (!is_range) return whole;
  const SoupRange first = ranges[0];
  soup_message_headers_free_ranges(asked, ranges);
  if (count != 1) return whole;
  const SoupRange range{std::max<goffset>(first.start, 0), std::min(first.end, size - 1)};
  SoupMessageHeaders* headers = soup_server_message_get_response_headers(message);
  if (range.start >= size) {
    soup_server_message_set_status(message, SOUP_STATUS_REQUESTED_RANGE_NOT_SATISFIABLE, nullptr);
    soup_message_headers_replace(headers, "Content-Range", ("bytes */" + std::to_string(size)).c_str());
    return {size, size - 1};
  }
  soup_server_message_set_status(message, SOUP_STATUS_PARTIAL_CONTENT, nullptr);
  soup_message_headers_set_content_range(headers, range.start, range.end, size);
  return range;
}

void SendPart(SoupServerMessage* message, int file, SoupRange range) {
  auto* const part = new FilePart(file, range);
  g_object_set_data_full(G_OBJECT(message), "corvis-file-part", part,
                         [](gpointer data) { delete static_cast<FilePart*>(data); });
  soup_message_body_set_accumulate(soup_server_message_get_response_body(message), FALSE);
  g_signal_connect(message, "wrote-chunk", G_CALLBACK(FilePart::OnPieceWritten), part);
  part->AppendPiece(message);
}

}  // namespace

bool RespondWithFile(SoupServerMessage* message, const std::string& file) {
  const int opened = open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  struct stat status {};
  if (opened < 0 || fstat(opened, &status) != 0 || !S_ISREG(status.st_mode)) {
    if (opened >= 0) close(opened);
    return false;
  }
  const Validators validators = ValidatorsOf(status);
  SoupMessageHeaders* headers = soup_server_message_get_response_headers(message);
  soup_message_headers_replace(headers, "ETag", validators.entity_tag.c_str());
  soup_message_headers_replace(headers, "Last-Modified", validators.last_modified.c_str());
  if (IsUnchanged(message, validators)) {
    close(opened);
    soup_server_message_set_status(message, SOUP_STATUS_NOT_MODIFIED, nullptr);
    return true;
  }
  soup_message_headers_replace(headers, "Accept-Ranges", "bytes");
  soup_message_headers_set_content_type(headers, ContentTypeOf(file).c_str(), nullptr);
  const SoupRange range = ChooseRange(message, status.st_size, validators);
  soup_message_headers_set_content_length(headers, range.end + 1 - range.start);
  SendPart(message, opened, range);
  return true;
}

}  // namespace corvis::tv
