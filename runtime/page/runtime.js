// The runtime's side of a page: the channel objects and classes that script APIs use, and the publishing of their
// exports.
//
// Evaluates to a function that is called once for each frame, before any script of the page. `reports` is the result of
// console.js, and `native` provides close() in a main frame. Only the runtime calls the functions of the result.
// What calls and messages need of the engine is read here, while it is still the engine's own; later no method of an array,
// a text or a Map is looked up that the page may have replaced.
(function (reports, native) {
  'use strict';

  var parse = JSON.parse;
  var stringify = JSON.stringify;
  var toText = String;
  var endsWith = asFunction(String.prototype.endsWith);
  var indexOf = asFunction(Array.prototype.indexOf);
  var slice = asFunction(Array.prototype.slice);
  var concat = asFunction(Array.prototype.concat);
  var filter = asFunction(Array.prototype.filter);
  var forEach = asFunction(Array.prototype.forEach);
  var getFrom = asFunction(Map.prototype.get);
  var setIn = asFunction(Map.prototype.set);
  var deleteFrom = asFunction(Map.prototype.delete);

  // A method as a function whose first argument is the object.
  function asFunction(method) {
    return Function.prototype.call.bind(method);
  }

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
    if (endsWith(text, end)) reports.caught(error);
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

  // Old libraries define toJSON for all objects or all arrays. An extension gets what the script API has passed.
  function isForAll(toJson) {
    return toJson !== undefined && (toJson === Object.prototype.toJSON || toJson === Array.prototype.toJSON);
  }

  function jsonText(value) {
    if (Object.prototype.toJSON === undefined && Array.prototype.toJSON === undefined)
      return stringify(value);
    return stringify(value, function (name, converted) {
      var member = this[name];
      return member !== undefined && member !== null && isForAll(member.toJSON) ? member : converted;
    });
  }

  // The text of a call.
  function messageText(name, args) {
    return '{"cmd":' + stringify(name) + ',"args":' + jsonText(args) + '}';
  }

  // Communicates with the native side of one extension. `extension` is its channel.
  function NativeManager(extension) {
    this.extension_ = extension;
    this.listeners_ = new Map();
    var self = this;
    extension.onmessage = function (text) {
      var message = parse(text);
      // A copy, because a listener may change the list.
      forEach(slice(self.listenersOf_(message.listenerId)), function (listener) {
        try {
          listener(message);
        } catch (error) {
          reports.uncaught(error);
        }
      });
    };
  }

  NativeManager.prototype.listenersOf_ = function (id) {
    return getFrom(this.listeners_, id) || [];
  };

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
    var listeners = this.listenersOf_(id);
    if (indexOf(listeners, listener) < 0) setIn(this.listeners_, id, concat(listeners, [listener]));
  };

  NativeManager.prototype.removeListener = function (id, listener) {
    var listeners = filter(this.listenersOf_(id), function (other) {
      return other !== listener;
    });
    if (listeners.length > 0) {
      setIn(this.listeners_, id, listeners);
    } else {
      deleteFrom(this.listeners_, id);
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
