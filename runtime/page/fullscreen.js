// Grants full screen to pages: the engine refuses it without a user's gesture, but what a viewer says reaches a page
// without one.
//
// Evaluates to a function that is called once for each frame, before any script of the page. `native` provides
// activate(name), which dispatches an event of this name to the page's window as if its user had caused it.
(function (native) {
  'use strict';

  var apply = Function.prototype.call.bind(Function.prototype.apply);
  var listen = Function.prototype.call.bind(EventTarget.prototype.addEventListener);
  var activation = navigator.userActivation;
  var random = Math.random;

  // The main window; undefined in a frame of another origin, which keeps the engine's rule.
  function mainWindow() {
    try {
      return window.top.document && window.top;
    } catch (error) {
      return undefined;
    }
  }

  function grant(prototype, name) {
    var original = prototype && prototype[name];
    if (typeof original !== 'function') return;
    prototype[name] = function () {
      var element = this;
      var options = arguments;
      var main = mainWindow();
      if (!main || (activation && activation.isActive)) return apply(original, element, options);
      return new Promise(function (resolve, reject) {
        // A name that the page can't know.
        var event = 'activate' + random().toString().slice(2);
        function request() {
          try {
            resolve(apply(original, element, options));
          } catch (error) {
            reject(error);
          }
        }
        listen(main, event, request, { once: true });
        native.activate(event);
      });
    };
  }

  ['requestFullscreen', 'webkitRequestFullscreen', 'webkitRequestFullScreen'].forEach(function (name) {
    grant(Element.prototype, name);
  });
  ['webkitEnterFullscreen', 'webkitEnterFullScreen'].forEach(function (name) {
    grant(HTMLVideoElement.prototype, name);
  });
});
