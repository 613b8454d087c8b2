// Serves the files of one application over HTTP to its own pages on this machine.
#ifndef CORVIS_RUNTIME_LAUNCHER_APPLICATION_SERVER_H_
#define CORVIS_RUNTIME_LAUNCHER_APPLICATION_SERVER_H_

#include <libsoup/soup.h>

#include <functional>
#include <memory>
#include <string>

#include "launcher/served_folder.h"
#include "nurvo_desktop/glib_ptr.h"

namespace corvis::tv {

// Listens on 127.0.0.1, with a new port and a random host name. It refuses requests for any other host name,
// so that neither pages of other origins nor other users of the machine can read the files. Runs on the main
// loop.
class ApplicationServer {
 public:
  // Receives the path of a request whose file is missing, and the reason in a sentence.
  using MissingSink = std::function<void(const std::string& path, const std::string& reason)>;

  // Serves at `authority`, the "HOST:PORT" of an earlier server, or at a new one if that is empty. Returns
  // null and an error message on failure.
  static std::unique_ptr<ApplicationServer> Start(ServedFolder folder, const std::string& authority,
                                                  std::string& error);
  ~ApplicationServer();
  ApplicationServer(const ApplicationServer&) = delete;
  ApplicationServer& operator=(const ApplicationServer&) = delete;

  // "HOST:PORT"
  const std::string& authority() const { return authority_; }
  std::string origin() const { return "http://" + authority_; }
  void set_on_missing(MissingSink sink) { on_missing_ = std::move(sink); }

 private:
  explicit ApplicationServer(ServedFolder folder);
  // `port` 0 lets the kernel choose. Returns false if the port can't be bound, also for IPv6.
  bool Listen(const std::string& host, int port, std::string& error);
  static void OnRequest(SoupServer* server, SoupServerMessage* message, const char* path, GHashTable* query,
                        gpointer self);
  bool IsAddressed(SoupServerMessage* message) const;
  void Answer(SoupServerMessage* message);

  ServedFolder folder_;
  nurvo::GObjectPtr<SoupServer> server_;
  nurvo::GObjectPtr<GSocket> reserved_;
  std::string authority_;
  MissingSink on_missing_;
};

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_LAUNCHER_APPLICATION_SERVER_H_
