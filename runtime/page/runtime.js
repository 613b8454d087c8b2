// The runtime's side of a page: the channel objects and classes that script APIs use, and the publishing of their
// exports.
//
// Evaluates to a function that is called once for each frame, before any script of the page. `reports` is the result of
// console.js, and `native` provides close() in a main frame. Only the runtime calls the functions of the result.
// Built-ins that the page may change later (JSON) are read here, while they are still the engine's own.
(function (reports, native) {
  'use strict';

  var parse = JSON.parse;
  var stringify = JSON.stringify;
  var toText = String;

  // The last exception that a script API converted to text; the next line on its console may contain that text.
  var caught;

  // The String function of script APIs.
  function textOf(value) {
    if (value instanceof Error) caught = value;
    return toText(value);
  }

  function reportCaught(text) {
    var error = caught;
    caught = undefined;
    if (error === undefined || typeof text !== 'string') return;
    var end = toText(error);
    if (text.slice(-end.length) === end) reports.caught(error);
  }

  // The console of a script API. Its lines are for debugging the API, not for the page's author; exceptions of the
  // page's functions are for both.
  function apiConsole() {
    var api = {};
    ['log', 'info', 'warn', 'error', 'debug'].forEach(function (level) {
      api[level] = function (text) {
        reports.api(level, arguments);
        reportCaught(text);
      };
    });
    return api;
  }

  // The engine lets a page close itself only before it has navigated, but a TV application may end at any time.
  function closeWith(close) {
    return function () {
      close();
    };
  }

  // The error type of the script APIs.
  function CorviException(code, message) {
    this.code = code;
    this.name = code;
    this.message = message;
    this.stack = new Error(message).stack;
  }
  CorviException.prototype = Object.create(Error.prototype, {
    constructor: { value: CorviException, writable: true, configurable: true },
  });
  CorviException.TYPE_MISMATCH_ERR = 'TypeMismatchError';

  // The text of a call. The page may have changed prototypes (such as Object.prototype.toJSON), which affects only the
  // serialization of the arguments; the name is inserted as the script API passed it.
  function messageText(name, args) {
    return '{"cmd":' + stringify(name) + ',"args":' + stringify(args) + '}';
  }

  // Communicates with the native side of one extension. `extension` is its channel.
  function NativeManager(extension) {
    this.extension_ = extension;
    this.listeners_ = new Map();
    var self = this;
    extension.onmessage = function (text) {
      var message = parse(text);
      // A copy, because a listener may change the list.
      (self.listeners_.get(message.listenerId) || []).slice().forEach(function (listener) {
        try {
          listener(message);
        } catch (error) {
          reports.uncaught(error);
        }
      });
    };
  }

  // Calls the native handler `name` and returns its reply object.
  NativeManager.prototype.callSync = function (name, args) {
    return parse(this.extension_.sendSync(messageText(name, args === undefined ? {} : args)));
  };

  NativeManager.prototype.isFailure = function (result) {
    return result.status !== 'success';
  };

  NativeManager.prototype.getErrorObject = function (result) {
    var error = result.error || {};
    return new CorviException(error.name || 'UnknownError', error.message || 'The call failed');
  };

  // Adds a listener for the messages of one id, unless it is already registered.
  NativeManager.prototype.addListener = function (id, listener) {
    var listeners = this.listeners_.get(id) || [];
    if (listeners.indexOf(listener) < 0) this.listeners_.set(id, listeners.concat([listener]));
  };

  NativeManager.prototype.removeListener = function (id, listener) {
    var listeners = (this.listeners_.get(id) || []).filter(function (other) {
      return other !== listener;
    });
    if (listeners.length > 0) {
      this.listeners_.set(id, listeners);
    } else {
      this.listeners_.delete(id);
    }
  };

  var utils = {
    NativeManager: NativeManager,
    type: {},
    converter: {},
    validator: { Types: {} },
  };

  // Publishes an object under a dotted path on the global object.
  function publish(path, value) {
    var names = path.split('.');
    var last = names.pop();
    var owner = window;
    names.forEach(function (name) {
      if (!Object.prototype.hasOwnProperty.call(owner, name)) {
        Object.defineProperty(owner, name, {
          value: {},
          enumerable: true,
          configurable: true,
          writable: true,
        });
      }
      owner = owner[name];
    });
    Object.defineProperty(owner, last, {
      value: value,
      enumerable: true,
      configurable: true,
      writable: true,
    });
  }

  if (native.close) window.close = closeWith(native.close);

  return {
    // Runs a script API. `build(xwalk, extension, console, String)` is its source, wrapped so that it returns its
    // exports; `sendSync` passes a call to its native side. Returns the function that receives messages posted to it.
    attach: function (path, build, sendSync) {
      window.CorviException = CorviException;
      var extension = { sendSync: sendSync, onmessage: function () {} };
      publish(path, build({ utils: utils }, extension, apiConsole(), textOf));
      return function (text) {
        try {
          extension.onmessage(text);
        } catch (error) {
          reports.uncaught(error);
        }
      };
    },
  };
});
