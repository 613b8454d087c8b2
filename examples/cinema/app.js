// Starts the application and handles the keys of the remote control.
(function () {
  'use strict';

  var moves = { ArrowLeft: [-1, 0], ArrowRight: [1, 0], ArrowUp: [0, -1], ArrowDown: [0, 1] };

  document.addEventListener('keydown', function (event) {
    if (moves[event.key]) {
      screens.move.apply(null, moves[event.key]);
      event.preventDefault();
    } else if (event.key === 'Backspace' || event.key === 'Escape') {
      screens.show('Home');
    }
  });

  document.getElementById('hero-play').onclick = function () {
    screens.watch(catalogue.titles[0]);
  };
  document.getElementById('hero-list').onclick = function () {
    screens.lists.bookmarks.push(catalogue.titles[0].id);
    screens.show('List');
  };
  document.getElementById('play-button').onclick = function () {
    if (player.state.mode === 'playing') {
      player.pause();
    } else {
      player.play();
    }
  };
  document.getElementById('stop-button').onclick = player.stop;
  document.getElementById('next-button').onclick = player.next;
  document.getElementById('previous-button').onclick = player.previous;
  Array.prototype.forEach.call(document.querySelectorAll('[data-screen]'), function (node) {
    node.onclick = function () {
      screens.show(node.getAttribute('data-screen'));
    };
  });
  Array.prototype.forEach.call(document.querySelectorAll('#screen-setting li'), function (node) {
    node.onclick = function () {
      node.classList.toggle('on');
    };
  });

  screens.show('Home');
})();
