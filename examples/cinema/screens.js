// The screens: their contents, the current screen, and the focus that the remote control moves.
var screens = (function () {
  'use strict';

  var current = 'Home';
  var lists = { bookmarks: ['moth'], watchLater: ['orbit', 'glass'] };
  var results = [];
  var listeners = [];

  // Kept, because the document contains only the choices of the current screen.
  var elements = {};
  Array.prototype.forEach.call(document.querySelectorAll('main [id], #screen-name'), function (node) {
    elements[node.id] = node;
  });

  function element(id) {
    return elements[id];
  }

  // What can be selected on each screen, and its place. Voice also lists what is hidden, so it leaves with its screen.
  var choices = Array.prototype.map.call(document.querySelectorAll('.choices'), function (node) {
    var place = document.createComment('');
    node.parentNode.insertBefore(place, node);
    return { node: node, place: place };
  });

  function placeChoices() {
    choices.forEach(function (choice) {
      if (choice.place.parentNode.closest('[hidden]')) choice.node.remove();
      else choice.place.parentNode.insertBefore(choice.node, choice.place);
    });
  }

  function make(tag, className, text) {
    var node = document.createElement(tag);
    node.className = className;
    if (text) node.textContent = text;
    return node;
  }

  function poster(entry) {
    var button = make('button', 'poster');
    button.style.backgroundImage = entry.poster;
    button.setAttribute('data-id', entry.id);
    button.appendChild(make('span', 'poster-title', entry.title));
    // An attribute shown by CSS, because the button's text is its name for voice.
    button.setAttribute('data-facts', entry.year + ' · ' + entry.genre);
    button.onclick = function () {
      watch(entry);
    };
    return button;
  }

  function fill(container, entries, emptyText) {
    container.textContent = '';
    entries.forEach(function (entry) {
      container.appendChild(poster(entry));
    });
    if (entries.length === 0) container.appendChild(make('p', 'empty', emptyText));
  }

  function renderHome() {
    var shelves = element('shelves');
    shelves.textContent = '';
    catalogue.shelves.forEach(function (shelf) {
      var section = make('section', 'shelf');
      var row = make('div', 'row');
      section.appendChild(make('h2', 'shelf-name', shelf.name));
      fill(row, shelf.ids.map(catalogue.byId), '');
      section.appendChild(row);
      shelves.appendChild(section);
    });
  }

  function renderLists() {
    fill(element('bookmarks'), lists.bookmarks.map(catalogue.byId), 'No bookmarks yet.');
    fill(element('watch-later'), lists.watchLater.map(catalogue.byId), 'Nothing to watch later.');
    element('bookmark-count').textContent = lists.bookmarks.length;
    element('watch-later-count').textContent = lists.watchLater.length;
  }

  function renderResults() {
    fill(element('results'), results, 'Nothing was found.');
    element('result-count').textContent = results.length;
  }

  function clock(seconds) {
    var minutes = Math.floor(seconds / 60);
    var rest = seconds % 60;
    return minutes + ':' + (rest < 10 ? '0' : '') + rest;
  }

  function renderPlayer(state) {
    element('player-state').textContent = state.mode;
    element('player-title').textContent = state.entry ? state.entry.title : '';
    element('backdrop').style.backgroundImage = state.entry ? state.entry.poster : '';
    element('position').textContent = state.position;
    element('clock').textContent = clock(state.position) + ' / ' + clock(player.duration());
    element('progress').style.width =
      (player.duration() ? (100 * state.position) / player.duration() : 0) + '%';
    element('stage').style.transform = 'scale(' + state.zoom / 100 + ')';
    element('modes').textContent = [
      'subtitles ' + (state.subtitles ? 'on' : 'off'),
      'shuffle ' + (state.shuffle ? 'on' : 'off'),
      'repeat ' + state.repeat,
      'fit ' + (state.screenFit ? 'on' : 'off'),
      '360° ' + (state.panorama ? 'on' : 'off'),
      'zoom ' + state.zoom + '%',
    ].join('  ·  ');
    element('play-button').textContent = state.mode === 'playing' ? 'Pause' : 'Play';
  }

  function show(name) {
    current = name;
    ['Home', 'Player', 'Search', 'List', 'Setting'].forEach(function (screen) {
      element('screen-' + screen.toLowerCase()).hidden = screen !== name;
    });
    placeChoices();
    element('screen-name').textContent = name;
    if (name === 'List') renderLists();
    focusFirst();
    listeners.forEach(function (listener) {
      listener(name);
    });
  }

  function watch(entry) {
    player.load(entry);
    show('Player');
  }

  // The elements of the current screen that the remote control can reach.
  function focusables() {
    var nodes = element('screen-' + current.toLowerCase()).querySelectorAll('button, a[href], li[tabindex]');
    return Array.prototype.slice.call(nodes);
  }

  function focusFirst() {
    var first = focusables()[0];
    if (first) first.focus();
  }

  function centre(node) {
    var box = node.getBoundingClientRect();
    return { x: box.left + box.width / 2, y: box.top + box.height / 2 };
  }

  // Moves the focus to the nearest element in a direction; sideways offsets count double.
  function move(dx, dy) {
    var from = centre(document.activeElement);
    var best = null;
    var bestDistance = Infinity;
    focusables().forEach(function (node) {
      var to = centre(node);
      var along = (to.x - from.x) * dx + (to.y - from.y) * dy;
      var across = Math.abs((to.x - from.x) * dy) + Math.abs((to.y - from.y) * dx);
      if (along > 1 && along + 2 * across < bestDistance) {
        best = node;
        bestDistance = along + 2 * across;
      }
    });
    if (best) {
      best.focus();
      best.scrollIntoView({ block: 'nearest', inline: 'nearest' });
    }
    return best !== null;
  }

  renderHome();
  player.onChange(renderPlayer);

  return {
    lists: lists,
    current: function () {
      return current;
    },
    onShow: function (listener) {
      listeners.push(listener);
    },
    show: show,
    watch: watch,
    move: move,
    focusables: focusables,
    renderLists: renderLists,
    showResults: function (entries) {
      results = entries;
      renderResults();
      show('Search');
    },
  };
})();
