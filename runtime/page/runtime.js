// The runtime's side of a page: the channel objects and classes that script APIs lean on, the publishing of what
// they export, and the way of console lines and uncaught errors to the terminal.
//
// Evaluates to a function that is called once for each frame, before any script of the page. `native` offers
// print(level, text, source) and, in a main frame, close(); what it returns is called by the runtime alone. What the page may change later (JSON,
// Array.prototype, console) is taken here, while it is still the engine's own.
(function (native) {
  'use strict';

  var parse = JSON.parse;
  var stringify = JSON.stringify;
  var apply = Function.prototype.call.bind(Function.prototype.apply);

  // A short text for a console argument or an error.
  function textOf(value) {
    try {
      if (value instanceof Error) return value.stack ? value + '\n' + value.stack : String(value);
      if (typeof value === 'object' && value !== null) return stringify(value) || String(value);
      return String(value);
    } catch (error) {
      return '(no text)';
    }
  }

  function print(level, values, source) {
    var texts = [];
    for (var i = 0; i < values.length; i++) texts[i] = textOf(values[i]);
    native.print(level, texts.join(' '), source);
  }

  var levels = ['log', 'info', 'warn', 'error', 'debug'];

  function forwardConsole() {
    levels.forEach(function (level) {
      var original = console[level];
      console[level] = function () {
        print(level, arguments, 'page');
        return apply(original, console, arguments);
      };
    });
  }

  function whereOf(event) {
    return event.filename ? ' (' + event.filename + ':' + event.lineno + ')' : '';
  }

  function forwardUncaught() {
    window.addEventListener('error', function (event) {
      // Only scripts' errors: an image that does not load fires an event of the same name without a message.
      if (event.message) native.print('uncaught', event.message + whereOf(event), 'page');
    });
    window.addEventListener('unhandledrejection', function (event) {
      native.print('uncaught', 'Unhandled rejection: ' + textOf(event.reason), 'page');
    });
  }

  // The engine lets a page close itself only before it has gone anywhere; a TV's application ends when it says so.
  function closeWith(close) {
    return function () {
      close();
    };
  }

  function reportUncaught(error) {
    native.print('uncaught', textOf(error), 'page');
  }

  // The console of a script API: its lines are for whoever looks into the API, not for the page's author.
  function apiConsole() {
    var api = {};
    levels.forEach(function (level) {
      api[level] = function () {
        print(level, arguments, 'api');
      };
    });
    return api;
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

  // The call's text. The page may have changed every prototype by now (Object.prototype.toJSON for one), so that only
  // the arguments are made by what looks at those: the name is the one that the script API gave.
  function messageText(name, args) {
    return '{"cmd":' + stringify(name) + ',"args":' + stringify(args) + '}';
  }

  // Speaks with the native side of one extension. `extension` is its channel.
  function NativeManager(extension) {
    this.extension_ = extension;
    this.listeners_ = new Map();
    var self = this;
    extension.onmessage = function (text) {
      var message = parse(text);
      // A copy: a listener may change the list.
      (self.listeners_.get(message.listenerId) || []).slice().forEach(function (listener) {
        try {
          listener(message);
        } catch (error) {
          reportUncaught(error);
        }
      });
    };
  }

  // Calls the native handler `name` and gives its reply object.
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

  // Adds a listener for the messages of one id; one that is there already is not added again.
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

  // Puts an object under a dotted path of names on the global object.
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

  return {
    watch: function () {
      forwardConsole();
      forwardUncaught();
      if (native.close) window.close = closeWith(native.close);
    },
    // Runs a script API. `build(xwalk, extension, console)` is its text, wrapped so that it returns its exports;
    // `sendSync` carries a call to its native side. Returns the function that takes the messages posted to it.
    attach: function (path, build, sendSync) {
      window.CorviException = CorviException;
      var extension = { sendSync: sendSync, onmessage: function () {} };
      publish(path, build({ utils: utils }, extension, apiConsole()));
      return function (text) {
        try {
          extension.onmessage(text);
        } catch (error) {
          reportUncaught(error);
        }
      };
    },
  };
});
