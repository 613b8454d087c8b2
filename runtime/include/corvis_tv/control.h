// The D-Bus names and signatures of corvis-tv's control interface, shared by the runtime and its clients.
//
// A client calls the bus name APPLICATION-ID.runtime. Replies and signals arrive in the order in which they
// were sent, so the signals for everything that a page wrote before a reply precede that reply.
#ifndef CORVIS_TV_CONTROL_H_
#define CORVIS_TV_CONTROL_H_

namespace corvis::tv {

// The suffix that follows the application id in the bus name.
constexpr const char* kControlNameSuffix = ".runtime";
constexpr const char* kControlPath = "/corvis/tv";
constexpr const char* kControlInterface = "corvis.tv.Control";

// A method and the D-Bus signatures of its arguments and reply.
struct ControlMethod {
  const char* name;
  const char* arguments;
  const char* reply;
};

// Load a page by URL, or reload the current one. Both reply when the page is loaded, or fail with
// kErrorLoadFailed.
constexpr ControlMethod kLoadMethod{"Load", "s", ""};
constexpr ControlMethod kReloadMethod{"Reload", "", ""};
// Evaluates an expression in the page's main frame. Replies with its value as JSON, "null" if there is none.
// An exception is reported as kErrorScript.
constexpr ControlMethod kEvaluateMethod{"Evaluate", "s", "s"};
// Replies with the visible page as PNG.
constexpr ControlMethod kScreenshotMethod{"Screenshot", "", "ay"};
// Press and release a key of a remote control, by its name in remote_keys.h, or the keys of a text. Both
// reply when the page has handled the events.
constexpr ControlMethod kPressKeyMethod{"PressKey", "s", ""};
constexpr ControlMethod kTypeTextMethod{"TypeText", "s", ""};
// Replies after the Console signals for everything that the page wrote so far.
constexpr ControlMethod kSyncMethod{"Sync", "", ""};
// Replaces the application's privileges (URIs).
constexpr ControlMethod kSetPrivilegesMethod{"SetPrivileges", "as", ""};
// Removes everything that pages have stored: local and session storage, IndexedDB, cookies, caches, service
// workers.
constexpr ControlMethod kClearStorageMethod{"ClearStorage", "", ""};
// Replies with the page's URL, whether it is loading, the id of its process (0: none), and the crashes of
// this run.
constexpr ControlMethod kGetStatusMethod{"GetStatus", "", "sbuu"};
// Ends the runtime.
constexpr ControlMethod kQuitMethod{"Quit", "", ""};

constexpr ControlMethod kControlMethods[] = {kLoadMethod,       kReloadMethod,        kEvaluateMethod,
                                             kScreenshotMethod, kPressKeyMethod,      kTypeTextMethod,
                                             kSyncMethod,       kSetPrivilegesMethod, kClearStorageMethod,
                                             kGetStatusMethod,  kQuitMethod};

struct ControlSignal {
  const char* name;
  const char* arguments;
};

// A console line: level, text, and "page", or "api" for lines of a script API.
constexpr ControlSignal kConsoleSignal{"Console", "sss"};
// A page is loaded; the argument is its URL.
constexpr ControlSignal kLoadedSignal{"Loaded", "s"};
// The page's process crashed, and the page is reloaded. The argument is the number of crashes in this run.
constexpr ControlSignal kCrashedSignal{"Crashed", "u"};
// The page called window.close(): the application has ended, and the runtime ends.
constexpr ControlSignal kClosedSignal{"Closed", ""};

// Whether a browser is connected to the inspector now.
constexpr ControlSignal kInspectedSignal{"Inspected", "b"};

constexpr ControlSignal kControlSignals[] = {kInspectedSignal, kConsoleSignal, kLoadedSignal, kCrashedSignal,
                                             kClosedSignal};

constexpr const char* kErrorLoadFailed = "corvis.tv.Error.LoadFailed";
constexpr const char* kErrorScript = "corvis.tv.Error.ScriptError";
// Any other failure.
constexpr const char* kErrorFailed = "corvis.tv.Error.Failed";

}  // namespace corvis::tv

#endif  // CORVIS_TV_CONTROL_H_
