// Whether a server answers at a URL.
#ifndef CORVIS_KIT_APP_SERVER_PROBE_H_
#define CORVIS_KIT_APP_SERVER_PROBE_H_

#include <string>

namespace corvis::kit {

// The host and port of an http or https URL; an empty host if it is none.
struct ServerAddress {
  std::string host;
  std::string port;
  bool is_encrypted = false;
};
ServerAddress AddressOf(const std::string& url);

// Whether the server accepts a connection and, if it is not encrypted, answers a request. Takes at most
// little more than a second.
bool IsAnswering(const ServerAddress& address);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_APP_SERVER_PROBE_H_
