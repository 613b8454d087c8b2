// Where the members of a JSON text are, for error messages.
#ifndef CORVIS_KIT_CLI_JSON_PLACES_H_
#define CORVIS_KIT_CLI_JSON_PLACES_H_

#include <map>
#include <string>
#include <vector>

#include "base/result.h"

namespace corvis::kit {

class JsonPlaces {
 public:
  // Reads a text. Fails if it is not JSON, or if an object has a key twice; the message begins with the
  // place.
  static Result<JsonPlaces> Read(const std::string& file, const std::string& text);

  // "corvis.json:3:5" for the key that this path of keys leads to, or for the beginning of the text.
  std::string Of(const std::vector<std::string>& path) const;

 private:
  std::string file_;
  std::map<std::vector<std::string>, std::string> places_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_JSON_PLACES_H_
