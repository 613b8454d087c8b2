// Checks requests to the server and answers them.
#include "launcher/application_server.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <utility>

#include "launcher/file_response.h"

namespace corvis::tv {

namespace {

// Names under .localhost resolve to this machine and are secure contexts.
std::string NewHostName() {
  unsigned char random[16];
  if (getentropy(random, sizeof(random)) != 0) return "";
  std::string name = "app-";
  char digits[3];
  for (const unsigned char byte : random) {
    std::snprintf(digits, sizeof(digits), "%02x", byte);
    name += digits;
  }
  return name + ".localhost";
}

int PortOf(SoupServer* server) {
  GSList* uris = soup_server_get_uris(server);
  const int port = uris == nullptr ? 0 : g_uri_get_port(static_cast<GUri*>(uris->data));
  g_slist_free_full(uris, [](gpointer uri) { g_uri_unref(static_cast<GUri*>(uri)); });
  return port;
}

nurvo::GObjectPtr<GSocketAddress> Loopback(GSocketFamily family, int port) {
  const nurvo::GObjectPtr<GInetAddress> address(g_inet_address_new_loopback(family));
  return nurvo::GObjectPtr<GSocketAddress>(
      g_inet_socket_address_new(address.get(), static_cast<guint16>(port)));
}

// Binds the port on ::1 without listening. Engines also try ::1 for names under .localhost, and no other
// user's program must be able to answer there. Returns false if the port is taken.
bool Reserve(int port, nurvo::GObjectPtr<GSocket>& socket) {
  socket.reset(g_socket_new(G_SOCKET_FAMILY_IPV6, G_SOCKET_TYPE_STREAM, G_SOCKET_PROTOCOL_DEFAULT, nullptr));
  // Without IPv6 no program can answer there.
  if (!socket) return true;
  GError* failure = nullptr;
  g_socket_bind(socket.get(), Loopback(G_SOCKET_FAMILY_IPV6, port).get(), FALSE, &failure);
  const nurvo::GErrorPtr error(failure);
  return !error || !g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_ADDRESS_IN_USE);
}

void Refuse(SoupServerMessage* message, SoupStatus status) {
  const std::string text = std::string(soup_status_get_phrase(status)) + "\n";
  soup_server_message_set_status(message, status, nullptr);
  soup_server_message_set_response(message, "text/plain", SOUP_MEMORY_COPY, text.data(), text.size());
}

}  // namespace

ApplicationServer::ApplicationServer(ServedFolder folder) : folder_(std::move(folder)) {}

ApplicationServer::~ApplicationServer() {
  if (server_) soup_server_disconnect(server_.get());
}

std::unique_ptr<ApplicationServer> ApplicationServer::Start(ServedFolder folder, const std::string& authority,
                                                            std::string& error) {
  std::unique_ptr<ApplicationServer> server(new ApplicationServer(std::move(folder)));
  const size_t colon = authority.find(':');
  if (colon != std::string::npos) {
    const int port = std::atoi(authority.c_str() + colon + 1);
    return server->Listen(authority.substr(0, colon), port, error) ? std::move(server) : nullptr;
  }
  constexpr int kMostTries = 10;
  for (int i = 0; i < kMostTries; ++i) {
    if (server->Listen(NewHostName(), 0, error)) return server;
  }
  return nullptr;
}

bool ApplicationServer::Listen(const std::string& host, int wanted_port, std::string& error) {
  // Paths stay encoded, so that an encoded slash can be distinguished from a separator.
  server_.reset(soup_server_new("raw-paths", TRUE, nullptr));
  GError* failure = nullptr;
  soup_server_listen(server_.get(), Loopback(G_SOCKET_FAMILY_IPV4, wanted_port).get(),
                     SoupServerListenOptions(0), &failure);
  const nurvo::GErrorPtr reason(failure);
  const int port = reason ? 0 : PortOf(server_.get());
  if (port == 0 || host.empty() || !Reserve(port, reserved_)) {
    error = std::string("The files can't be served on 127.0.0.1: ") +
            (reason ? reason->message : "the port is taken") + ".";
    return false;
  }
  authority_ = host + ":" + std::to_string(port);
  soup_server_add_early_handler(
      server_.get(), nullptr,
      [](SoupServer* /*server*/, SoupServerMessage* message, const char* /*path*/, GHashTable* /*query*/,
         gpointer /*data*/) {
        // Request bodies are not used.
        soup_message_body_set_accumulate(soup_server_message_get_request_body(message), FALSE);
      },
      nullptr, nullptr);
  soup_server_add_handler(server_.get(), nullptr, OnRequest, this, nullptr);
  return true;
}

bool ApplicationServer::IsAddressed(SoupServerMessage* message) const {
  const char* host = soup_message_headers_get_list(soup_server_message_get_request_headers(message), "Host");
  if (host == nullptr || g_ascii_strcasecmp(host, authority_.c_str()) != 0) return false;
  // If the request line contains a whole URL, its host takes precedence over the Host header.
  GUri* uri = soup_server_message_get_uri(message);
  const std::string named = std::string(g_uri_get_host(uri)) + ":" + std::to_string(g_uri_get_port(uri));
  return g_ascii_strcasecmp(named.c_str(), authority_.c_str()) == 0;
}

void ApplicationServer::OnRequest(SoupServer* /*server*/, SoupServerMessage* message, const char* /*path*/,
                                  GHashTable* /*query*/, gpointer self) {
  auto& server = *static_cast<ApplicationServer*>(self);
  SoupMessageHeaders* headers = soup_server_message_get_response_headers(message);
  soup_message_headers_replace(headers, "Cache-Control", "no-cache");
  if (!server.IsAddressed(message)) return Refuse(message, SOUP_STATUS_FORBIDDEN);
  const char* method = soup_server_message_get_method(message);
  if (method == SOUP_METHOD_GET || method == SOUP_METHOD_HEAD) return server.Answer(message);
  soup_message_headers_replace(headers, "Allow", "GET, HEAD");
  Refuse(message, SOUP_STATUS_METHOD_NOT_ALLOWED);
}

void ApplicationServer::Answer(SoupServerMessage* message) {
  GUri* uri = soup_server_message_get_uri(message);
  const std::string path = g_uri_get_path(uri);
  const ServedFile file = FindServedFile(folder_, path);
  if (file.kind == ServedFile::Kind::kFolder) {
    const char* query = g_uri_get_query(uri);
    const std::string place = origin() + path + "/" + (query == nullptr ? "" : std::string("?") + query);
    return soup_server_message_set_redirect(message, SOUP_STATUS_MOVED_PERMANENTLY, place.c_str());
  }
  if (file.kind == ServedFile::Kind::kFile && RespondWithFile(message, file.path)) return;
  if (!file.reason.empty() && on_missing_) on_missing_(path, file.reason);
  Refuse(message, SOUP_STATUS_NOT_FOUND);
}

}  // namespace corvis::tv
