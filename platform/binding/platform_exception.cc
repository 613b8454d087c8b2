// The error type of the binding. Its functions are defined out of line, so that its type information exists
// only once and exceptions are recognized across libraries.
#include "nurvo/extension.h"

namespace common {

// NOLINTNEXTLINE(modernize-pass-by-value): the signature is the platform's.
PlatformException::PlatformException(const std::string& name, const std::string& message)
    : name_(name), message_(message) {}

PlatformException::~PlatformException() = default;

const std::string& PlatformException::name() const {
  return name_;
}

const std::string& PlatformException::message() const {
  return message_;
}

}  // namespace common
