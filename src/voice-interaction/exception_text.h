// The text of an exception, for the log line of an operation that the platform calls: no exception may leave
// it.
#ifndef CORVIS_VOICE_INTERACTION_EXCEPTION_TEXT_H_
#define CORVIS_VOICE_INTERACTION_EXCEPTION_TEXT_H_

namespace extension::voice_interaction {

// The message of the exception that is being handled, which may be of any type. The text is valid as long as
// the exception. Call only in a handler.
const char* CurrentExceptionText() noexcept;

}  // namespace extension::voice_interaction

#endif  // CORVIS_VOICE_INTERACTION_EXCEPTION_TEXT_H_
