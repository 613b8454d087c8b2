// Notes which of the page's callbacks return a promise. Evaluated in the page before its own scripts.
(function () {
  var handler = window.corvis && window.corvis.voiceinteraction;
  if (!handler) return;
  // The names of the callbacks that are asynchronous by their text, or since they returned a promise; and of those that
  // have been reported.
  var asynchronous = new Set();
  var reported = new Set();
  var sources =
    /^(?:async\b|[^{]*(?:\{\s*return|=>)\s*(?:new Promise\b|Promise\.|fetch\(|__awaiter\(|__async\())/;
  Object.defineProperty(window, Symbol.for('corvis.newAsynchronous'), {
    value: function () {
      var found = Array.from(asynchronous).filter(function (name) {
        return !reported.has(name);
      });
      found.forEach(reported.add, reported);
      return found;
    },
  });

  function isPromise(value) {
    return value instanceof Object && typeof value.then === 'function';
  }

  function watched(name, callback) {
    if (sources.test(Function.prototype.toString.call(callback))) asynchronous.add(name);
    return function () {
      var value = callback.apply(this, arguments);
      if (isPromise(value)) asynchronous.add(name);
      return value;
    };
  }

  // The page's object with each function watched. What setCallback would refuse, it still refuses.
  function watchedAll(callbacks) {
    if (!(callbacks instanceof Object)) return callbacks;
    var all = Object.create(Object.getPrototypeOf(callbacks), Object.getOwnPropertyDescriptors(callbacks));
    Object.keys(callbacks).forEach(function (name) {
      var callback = callbacks[name];
      if (typeof callback === 'function')
        Object.defineProperty(all, name, { value: watched(name, callback), enumerable: true });
    });
    return all;
  }

  var setCallback = handler.setCallback;
  handler.setCallback = function (callbacks) {
    asynchronous.clear();
    return setCallback.call(this, watchedAll(callbacks));
  };
})();
