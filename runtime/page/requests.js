// Reports requests of a page that fail, and the position of the request.
//
// Evaluates to a function that is called once for each frame, before any script of the page. `native` provides
// asked(url, where) for requests of scripts, failed(url, reason, where) for failed requests (the reason is empty if the
// page can't know it), blocked(url, reason, where) for requests blocked by a policy, and url(text) and place(text),
// which map a URL and a position in a script to the author's source. The function returns another function, which finds
// the position in the document that requests a URL; its result is empty if unknown.
(function (native) {
  'use strict';

  var toText = String;
  var apply = Function.prototype.call.bind(Function.prototype.apply);
  var then = Function.prototype.call.bind(Promise.prototype.then);
  var listen = Function.prototype.call.bind(EventTarget.prototype.addEventListener);
  var document = window.document;
  var addressOf = ['currentSrc', 'src', 'href', 'data'];
  var written = ['src', 'href', 'data', 'poster', 'srcset'];

  function absolute(url) {
    try {
      return new URL(toText(url), document.baseURI).href;
    } catch (error) {
      return toText(url);
    }
  }

  // The innermost position in the stack outside the runtime's scripts.
  function callPlace() {
    var lines = toText(new Error().stack).split('\n');
    for (var i = 0; i < lines.length; i++) {
      var place = /((?:[\w+.-]+:\/|blob:|about:).*:\d+:\d+)$/.exec(lines[i]);
      if (place) return place[1];
    }
    return '';
  }

  function elementText(element) {
    var text = '<' + element.localName;
    written.forEach(function (name) {
      var value = element.getAttribute(name);
      if (value) text += ' ' + name + '="' + value.slice(0, 200) + '"';
    });
    return text + '> in ' + native.url(document.URL);
  }

  function urlOf(element) {
    var name = addressOf.find(function (candidate) {
      return typeof element[candidate] === 'string' && element[candidate] !== '';
    });
    return name ? element[name] : '';
  }

  // The reason for a failure, as far as the page can know it; otherwise empty.
  function reasonFor(url) {
    var isMixed = location.protocol === 'https:' && url.indexOf('http:') === 0;
    return isMixed ? 'mixed content: a page of https may not load http' : '';
  }

  function mediaReason(element) {
    var isMedia = element.error || element.localName === 'source';
    var said = element.error && element.error.message;
    return isMedia ? said || 'it is missing, or in no format that can be played here' : '';
  }

  function onError(event) {
    var element = event.target;
    // A style sheet that exists has failed because of one of its imports.
    if (!element || element.nodeType !== 1 || urlOf(element) === '' || element.sheet) return;
    var url = absolute(urlOf(element));
    native.failed(url, reasonFor(url) || mediaReason(element), elementText(element));
  }

  function onViolation(event) {
    if (event.disposition !== 'enforce') return;
    var place = event.sourceFile
      ? native.place(event.sourceFile + ':' + event.lineNumber + ':' + event.columnNumber)
      : native.url(document.URL);
    native.blocked(
      event.blockedURI,
      'blocked by the content-security policy, ' + event.effectiveDirective,
      place
    );
  }

  // The number of requests of scripts that are not finished, for tools that wait until the page is at rest.
  var pending = 0;
  Object.defineProperty(window, Symbol.for('corvis.pendingRequests'), {
    get: function () {
      return pending;
    },
  });

  // Begins a request; returns the function that ends it, and does so once.
  function beginRequest() {
    var isPending = true;
    pending += 1;
    return function () {
      if (isPending) pending -= 1;
      isPending = false;
    };
  }

  function watchFetch() {
    var original = window.fetch;
    if (typeof original !== 'function') return;
    window.fetch = function fetch(input) {
      var url = absolute(input && typeof input === 'object' && 'url' in input ? input.url : input);
      var where = callPlace();
      native.asked(url, where);
      var response = apply(original, window, arguments);
      var end = beginRequest();
      then(response, end, end);
      // Returns a separate promise, whose rejection the page handles.
      return then(response, undefined, function (error) {
        if (!error || error.name !== 'AbortError') native.failed(url, reasonFor(url), native.place(where));
        throw error;
      });
    };
  }

  function watchRequests() {
    var prototype = window.XMLHttpRequest.prototype;
    var open = prototype.open;
    var send = prototype.send;
    var urls = new WeakMap();
    var ends = new WeakMap();
    prototype.open = function () {
      // Gives up the request that the object still waits for, without an event.
      if (ends.has(this)) ends.get(this)();
      urls.set(this, absolute(arguments[1]));
      return apply(open, this, arguments);
    };
    prototype.send = function () {
      var url = urls.get(this);
      var where = callPlace();
      if (url !== undefined) {
        native.asked(url, where);
        listen(this, 'error', function () {
          native.failed(url, reasonFor(url), native.place(where));
        });
      }
      var end = beginRequest();
      ends.set(this, end);
      listen(this, 'loadend', end);
      try {
        return apply(send, this, arguments);
      } catch (error) {
        end();
        throw error;
      }
    };
  }

  // An event stream has failed when the engine gives up, or before its first event; it is no load of the engine's.
  function watchStream(stream, url, where) {
    var isOpen = false;
    listen(stream, 'open', function () {
      isOpen = true;
    });
    listen(stream, 'error', function () {
      if (isOpen) return;
      isOpen = true;
      native.failed(url, 'its server does not respond with an event stream', native.place(where));
    });
  }

  function watchEventSources() {
    var original = window.EventSource;
    if (typeof original !== 'function') return;
    window.EventSource = new Proxy(original, {
      construct: function (target, args, created) {
        var stream = Reflect.construct(target, args, created);
        watchStream(stream, stream.url, callPlace());
        return stream;
      },
    });
    original.prototype.constructor = window.EventSource;
  }

  function elementFor(url) {
    var elements = document.querySelectorAll('[src], [href], [data], [srcset], [poster]');
    var found = [].find.call(elements, function (element) {
      return absolute(urlOf(element)) === url || element.poster === url;
    });
    return found ? elementText(found) : '';
  }

  function nameIn(url) {
    return url.split('/').pop().split(/[?#]/)[0];
  }

  function styledElementFor(url) {
    var name = nameIn(url);
    var found = [].find.call(document.querySelectorAll('[style]'), function (element) {
      return name !== '' && element.style.cssText.indexOf(name) >= 0;
    });
    return found ? elementText(found) : '';
  }

  function sheetFor(url) {
    var name = nameIn(url);
    var sheet = [].find.call(document.styleSheets, function (candidate) {
      try {
        return [].some.call(candidate.cssRules, function (rule) {
          return rule.cssText.indexOf(name) >= 0;
        });
      } catch (error) {
        return false;
      }
    });
    return sheet ? 'a style sheet, ' + native.url(sheet.href || document.URL) : '';
  }

  listen(window, 'error', onError, true);
  listen(window, 'securitypolicyviolation', onViolation, true);
  watchFetch();
  watchRequests();
  watchEventSources();

  return function (url) {
    try {
      return elementFor(url) || styledElementFor(url) || sheetFor(url) || native.url(document.URL);
    } catch (error) {
      return '';
    }
  };
});
