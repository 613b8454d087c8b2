// The error reported to a page whose application lacks a privilege.
#ifndef CORVIS_COMMON_SECURITY_EXCEPTION_H_
#define CORVIS_COMMON_SECURITY_EXCEPTION_H_

#include "common/picojson.h"

#include <string>

#include "nurvo/extension.h"

namespace common {

class SecurityException : public PlatformException {
 public:
  explicit SecurityException(const std::string& message) : PlatformException("SecurityError", message) {}
};

}  // namespace common

#endif  // CORVIS_COMMON_SECURITY_EXCEPTION_H_
