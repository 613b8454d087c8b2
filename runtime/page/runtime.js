// The runtime's side of a page: the channel objects and classes that script APIs lean on, and the publishing of what
// they export.
//
// Evaluates to a function that is called once for each frame, before any script of the page. `reports` is what
// console.js gives, and `native` offers close() in a main frame; what this returns is called by the runtime alone. What the page may change later (JSON) is taken here, while
// it is still the engine's own.
(function (reports, native) {
  'use strict';

  var parse = JSON.parse;
  var stringify = JSON.stringify;
  var toText = String;

  // The last exception of which a script API made a text: what it writes to its console next may be that text.
  var caught;

  // A script API's String.
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

  // The console of a script API: its lines are for whoever looks into the API, not for the page's author. What the
  // page's functions threw is for both.
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

  // The engine lets a page close itself only before it has gone anywhere; a TV's application ends when it says so.
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
          reports.uncaught(error);
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

  if (native.close) window.close = closeWith(native.close);

  return {
    // Runs a script API. `build(xwalk, extension, console, String)` is its text, wrapped so that it returns its exports;
    // `sendSync` carries a call to its native side. Returns the function that takes the messages posted to it.
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
