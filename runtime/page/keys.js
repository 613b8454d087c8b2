// Sets the values of keyboard events for the keys of a remote control, few of which the engine knows.
//
// Evaluates to a function that is called once for each frame, before any script of the page. `native` provides key(),
// which returns the pressed key's values as JSON, or an empty text if none is pressed.
(function (native) {
  'use strict';

  var parse = JSON.parse;
  var define = Object.defineProperty;
  // Referenced, because the engine creates a new wrapper object for an event that no script references.
  var current = null;

  function set(event, name, value) {
    define(event, name, { value: value, enumerable: true, configurable: true });
  }

  function onKey(event) {
    var text = event.isTrusted ? native.key() : '';
    if (text === '') return;
    var key = parse(text);
    current = event;
    set(current, 'key', key.key);
    set(current, 'code', key.code);
    // The code of a keypress event is that of a character.
    if (event.type === 'keypress') return;
    set(current, 'keyCode', key.keyCode);
    set(current, 'which', key.keyCode);
  }

  ['keydown', 'keypress', 'keyup'].forEach(function (type) {
    window.addEventListener(type, onKey, true);
  });
});
