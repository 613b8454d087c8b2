// Security labels on a desktop, derived from the application id.
#include "nurvo/smack.h"

#include <string>

#include "access/policy.h"
#include "app/own_app_id.h"
#include "support/c_interface.h"

NURVO_EXPORT ssize_t smack_new_label_from_self(char** label) {
  if (label == nullptr) return -1;
  return nurvo::Guarded<ssize_t>(-1, [&]() -> ssize_t {
    const std::string app_id = nurvo::OwnAppId();
    if (app_id.empty()) return -1;
    const std::string text = std::string(nurvo::kLabelPrefix) + app_id;
    char* const copy = nurvo::CopyText(text);
    if (copy == nullptr) return -1;
    *label = copy;
    return static_cast<ssize_t>(text.size());
  });
}
