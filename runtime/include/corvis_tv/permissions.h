// The permissions that can be granted to pages, by name.
#ifndef CORVIS_TV_PERMISSIONS_H_
#define CORVIS_TV_PERMISSIONS_H_

#include <algorithm>
#include <iterator>
#include <string>

namespace corvis::tv {

constexpr const char* kPermissionNames[] = {"geolocation",     "notifications", "microphone", "camera",
                                            "screen",          "devices",       "clipboard",  "pointer-lock",
                                            "protected-media", "storage-access"};

inline bool IsPermission(const std::string& name) {
  return std::find(std::begin(kPermissionNames), std::end(kPermissionNames), name) !=
         std::end(kPermissionNames);
}

// The names, separated by commas.
inline std::string PermissionList() {
  std::string text;
  for (const char* name : kPermissionNames) text += std::string(text.empty() ? "" : ", ") + name;
  return text;
}

}  // namespace corvis::tv

#endif  // CORVIS_TV_PERMISSIONS_H_
