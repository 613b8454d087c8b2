// A simulated player without video: a position that advances during playback, and the usual player modes.
var player = (function () {
  'use strict';

  var state = {
    entry: null,
    mode: 'stopped',
    position: 0,
    speed: 1,
    subtitles: false,
    shuffle: false,
    screenFit: false,
    panorama: false,
    repeat: 'off',
    zoom: 100,
  };
  var listeners = [];

  function changed() {
    listeners.forEach(function (listener) {
      listener(state);
    });
  }

  function duration() {
    return state.entry ? state.entry.minutes * 60 : 0;
  }

  function seek(seconds) {
    state.position = Math.max(0, Math.min(duration(), seconds));
    changed();
  }

  function setMode(mode, speed) {
    state.mode = mode;
    state.speed = speed || 1;
    changed();
  }

  function load(entry) {
    state.entry = entry;
    state.position = 0;
    setMode('playing');
  }

  function neighbour(step) {
    var index = catalogue.titles.indexOf(state.entry) + step;
    var count = catalogue.titles.length;
    load(catalogue.titles[(index + count) % count]);
  }

  setInterval(function () {
    if (state.mode === 'playing') {
      seek(state.position + state.speed);
    }
  }, 1000);

  return {
    state: state,
    duration: duration,
    onChange: function (listener) {
      listeners.push(listener);
    },
    load: load,
    play: function () {
      setMode('playing');
    },
    pause: function () {
      setMode('paused');
    },
    stop: function () {
      state.position = 0;
      setMode('stopped');
    },
    wind: function (speed) {
      setMode('playing', speed);
    },
    seek: seek,
    skip: function (seconds) {
      seek(state.position + seconds);
    },
    next: function () {
      neighbour(1);
    },
    previous: function () {
      neighbour(-1);
    },
    set: function (name, value) {
      state[name] = value;
      changed();
    },
  };
})();
