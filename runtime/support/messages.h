// What the launcher's process and the web process agree on: the messages between them, by their names and the
// types of what they hold.
#ifndef CORVIS_RUNTIME_SUPPORT_MESSAGES_H_
#define CORVIS_RUNTIME_SUPPORT_MESSAGES_H_

namespace corvis::tv {

// From a page: console lines and uncaught errors; the level, text and source of each.
constexpr const char* kConsoleMessage = "console";
constexpr const char* kConsoleType = "a(sss)";
constexpr const char* kConsoleLineType = "(sss)";
// From a page: a new document began in the web process of this id.
constexpr const char* kProcessMessage = "process";
constexpr const char* kProcessType = "u";
// From a page: it closed itself.
constexpr const char* kCloseMessage = "close";
// From the web process as a whole: an extension is of no use; the sentence that says why.
constexpr const char* kBrokenExtensionMessage = "broken-extension";
constexpr const char* kBrokenExtensionType = "s";
// To a page: an expression. Answered with its value as JSON text, and the text of an exception (empty: none).
constexpr const char* kEvaluateMessage = "evaluate";
constexpr const char* kEvaluateType = "s";
constexpr const char* kValueType = "(ss)";
// To a page: what its keyboard events have from now on, as JSON text; empty for what the engine gives.
constexpr const char* kKeyMessage = "key";
constexpr const char* kKeyType = "s";
// To a page: answered after everything that it wrote so far.
constexpr const char* kSyncMessage = "sync";
// To a page, before the run ends: answered when the extensions have been shut down.
constexpr const char* kEndMessage = "end";

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_SUPPORT_MESSAGES_H_
