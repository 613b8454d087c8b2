// Finds the message of an exception by its type.
#include "voice-interaction/exception_text.h"

#include "common/picojson.h"

#include <exception>

#include "nurvo/extension.h"

namespace extension::voice_interaction {

const char* CurrentExceptionText() noexcept {
  try {
    throw;
  } catch (const std::exception& error) {
    return error.what();
  } catch (const common::PlatformException& error) {
    return error.message().c_str();
  } catch (...) {
    return "unknown exception";
  }
}

}  // namespace extension::voice_interaction
