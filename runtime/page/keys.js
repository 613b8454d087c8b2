// Gives the events of a remote control's keys what they have on a TV, since the engine knows few of these keys.
//
// Evaluates to a function that is called once for each frame, before any script of the page. `native` offers key(): the
// JSON text of the pressed key's values, empty while none is pressed.
(function (native) {
  'use strict';

  var parse = JSON.parse;
  var define = Object.defineProperty;
  // Kept: the engine would make another object of an event that no script refers to.
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
    // That of keypress is a character's.
    if (event.type === 'keypress') return;
    set(current, 'keyCode', key.keyCode);
    set(current, 'which', key.keyCode);
  }

  ['keydown', 'keypress', 'keyup'].forEach(function (type) {
    window.addEventListener(type, onKey, true);
  });
});
