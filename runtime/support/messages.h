// The messages between the launcher's process and the web process: their names and the types of their
// contents.
#ifndef CORVIS_RUNTIME_SUPPORT_MESSAGES_H_
#define CORVIS_RUNTIME_SUPPORT_MESSAGES_H_

namespace corvis::tv {

// What a web process gets at its start: the application's origin, the extension libraries, and whether lines
// of script APIs are followed.
constexpr const char* kStartType = "(sasb)";
// From a page: console lines and uncaught errors, each with level, text and source.
constexpr const char* kConsoleMessage = "console";
constexpr const char* kConsoleType = "a(sss)";
constexpr const char* kConsoleLineType = "(sss)";
// From a page: a new document has started; the web process's id.
constexpr const char* kProcessMessage = "process";
constexpr const char* kProcessType = "u";
// From a page: it closed itself.
constexpr const char* kCloseMessage = "close";
// From a page: dispatch an event, whose name consists of letters and digits, as a gesture of its user.
constexpr const char* kActivateMessage = "activate";
constexpr const char* kActivateType = "s";
// From the web process: an extension can't be used; the reason in a sentence.
constexpr const char* kBrokenExtensionMessage = "broken-extension";
constexpr const char* kBrokenExtensionType = "s";
// To a page: evaluate an expression. The reply has its value as JSON, and the text of an exception (empty:
// none).
constexpr const char* kEvaluateMessage = "evaluate";
constexpr const char* kEvaluateType = "s";
constexpr const char* kValueType = "(ss)";
// To a page: the values of its keyboard events from now on, as JSON; empty for the engine's own.
constexpr const char* kKeyMessage = "key";
constexpr const char* kKeyType = "s";
// To a page: replies after everything that it wrote so far.
constexpr const char* kSyncMessage = "sync";
// To a page, before the run ends: replies when the extensions have been shut down.
constexpr const char* kEndMessage = "end";

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_SUPPORT_MESSAGES_H_
