// The control interface of corvis-tv as it goes over the bus: what the runtime serves and what its clients
// call, each name and signature once.
//
// A client calls the bus name APPLICATION-ID.runtime. Replies and signals arrive in the order in which they
// were sent, on the connection that asked: whatever a page wrote before a reply was made comes ahead of that
// reply.
#ifndef CORVIS_TV_CONTROL_H_
#define CORVIS_TV_CONTROL_H_

namespace corvis::tv {

// Follows the application's id in the bus name.
constexpr const char* kControlNameSuffix = ".runtime";
constexpr const char* kControlPath = "/corvis/tv";
constexpr const char* kControlInterface = "corvis.tv.Control";

// A method, with the D-Bus signatures of its arguments and of its reply.
struct ControlMethod {
  const char* name;
  const char* arguments;
  const char* reply;
};

// Load a page (its URL), or the present one again. Both answer when the page is loaded, or kErrorLoadFailed.
constexpr ControlMethod kLoadMethod{"Load", "s", ""};
constexpr ControlMethod kReloadMethod{"Reload", "", ""};
// The value of an expression in the page's main frame, as JSON text; "null" where there is none. An exception
// is kErrorScript.
constexpr ControlMethod kEvaluateMethod{"Evaluate", "s", "s"};
// The visible page as the bytes of a PNG picture.
constexpr ControlMethod kScreenshotMethod{"Screenshot", "", "ay"};
// Press and release a key of a remote control, by its name in remote_keys.h, or the keys of a text. Both
// answer when the page has handled the events.
constexpr ControlMethod kPressKeyMethod{"PressKey", "s", ""};
constexpr ControlMethod kTypeTextMethod{"TypeText", "s", ""};
// Answers when the Console signals of everything that the page wrote so far have been sent.
constexpr ControlMethod kSyncMethod{"Sync", "", ""};
// The URIs of the privileges that the application holds from now on.
constexpr ControlMethod kSetPrivilegesMethod{"SetPrivileges", "as", ""};
// The page's URL, whether it is loading, the id of its process (0: none), and the crashes of this run.
constexpr ControlMethod kGetStatusMethod{"GetStatus", "", "sbuu"};
// Ends the runtime.
constexpr ControlMethod kQuitMethod{"Quit", "", ""};

constexpr ControlMethod kControlMethods[] = {
    kLoadMethod,     kReloadMethod, kEvaluateMethod,      kScreenshotMethod, kPressKeyMethod,
    kTypeTextMethod, kSyncMethod,   kSetPrivilegesMethod, kGetStatusMethod,  kQuitMethod};

struct ControlSignal {
  const char* name;
  const char* arguments;
};

// A console line: level, text, and "page", or "api" for lines of a script API.
constexpr ControlSignal kConsoleSignal{"Console", "sss"};
// The URL of a page that is loaded.
constexpr ControlSignal kLoadedSignal{"Loaded", "s"};
// The page's process crashed, so often in this run. The page is loaded again.
constexpr ControlSignal kCrashedSignal{"Crashed", "u"};
// The page closed itself (window.close()): the application has ended, and the runtime ends.
constexpr ControlSignal kClosedSignal{"Closed", ""};

constexpr ControlSignal kControlSignals[] = {kConsoleSignal, kLoadedSignal, kCrashedSignal, kClosedSignal};

constexpr const char* kErrorLoadFailed = "corvis.tv.Error.LoadFailed";
constexpr const char* kErrorScript = "corvis.tv.Error.ScriptError";
// Any other failure.
constexpr const char* kErrorFailed = "corvis.tv.Error.Failed";

}  // namespace corvis::tv

#endif  // CORVIS_TV_CONTROL_H_
