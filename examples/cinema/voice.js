// Voice control: the callbacks for all actions that this application handles, and their answers.
(function () {
  'use strict';

  var voice = window.corvis && corvis.voiceinteraction;
  var caption = document.getElementById('caption');
  var badge = document.getElementById('voice-badge');

  // Shows on screen what a command did, and returns the answer.
  function heard(text, answer) {
    caption.textContent = text;
    return answer === undefined ? true : answer;
  }

  // If nothing has been chosen yet, playback starts with the hero title.
  function inPlayer() {
    if (!player.state.entry) player.load(catalogue.titles[0]);
    if (screens.current() !== 'Player') screens.show('Player');
  }

  // Makes a callback for a player command from a caption and a function.
  function playerCommand(describe, run) {
    return function (param) {
      inPlayer();
      run(param);
      return heard(describe(param));
    };
  }

  function text(value) {
    return function () {
      return value;
    };
  }

  function termFields(term) {
    var fields = {
      title: 'TITLE',
      genre: 'GENRE',
      cast: 'CAST',
      from: 'RELEASE_DATE_FROM',
      to: 'RELEASE_DATE_TO',
    };
    var wanted = {};
    Object.keys(fields).forEach(function (name) {
      // An empty search term has no fields to read.
      if (Object.keys(term).length > 0)
        wanted[name] = voice.getDataFromSearchTerm(term, 'SEARCH_TERM_' + fields[name]);
    });
    return wanted;
  }

  function describeTerm(wanted) {
    return Object.keys(wanted)
      .filter(function (name) {
        return wanted[name];
      })
      .map(function (name) {
        return name + ' "' + wanted[name] + '"';
      })
      .join(', ');
  }

  function search(term) {
    var wanted = termFields(term);
    var found = catalogue.find(wanted);
    screens.showResults(found);
    return heard('Searched for ' + describeTerm(wanted) + ': ' + found.length + ' found');
  }

  // Answers with one entry as a deep link into this application, for a list that combines several applications.
  function collectionAnswer(term) {
    var found = catalogue.find(termFields(term))[0];
    if (!found) return heard('Nothing for the collection', false);
    var build = found.genre === 'documentary' ? 'Show' : 'Deeplink';
    heard('Collection: ' + found.title);
    return build === 'Show'
      ? voice.buildCollectionShowData(
          'com.example.cinema',
          found.title,
          found.id,
          'posters/' + found.id + '.png'
        )
      : voice.buildCollectionDeeplinkData('com.example.cinema', found.title, found.id);
  }

  var directions = {
    NAV_LEFT: [-1, 0],
    NAV_RIGHT: [1, 0],
    NAV_UP: [0, -1],
    NAV_DOWN: [0, 1],
    NAV_PREVIOUS: [-1, 0],
    NAV_NEXT: [1, 0],
    NAV_SHOW_MORE: [0, 1],
  };

  function navigate(direction) {
    var moved = screens.move.apply(null, directions[direction]);
    return heard(moved ? 'Moved: ' + document.activeElement.textContent.trim() : 'Nothing there', moved);
  }

  function select(number) {
    var node = screens.focusables()[number - 1];
    if (!node) return heard('There is no number ' + number, false);
    node.click();
    return heard('Chose number ' + number);
  }

  function openTitle(title) {
    var found = catalogue.find({ title: title })[0];
    if (!found) return heard('There is no ' + title, false);
    screens.watch(found);
    return heard('Opened ' + found.title);
  }

  var listByItem = { LIST_BOOKMARKS: 'bookmarks', LIST_WATCH_LATER: 'watchLater' };

  function changeList(item, add) {
    var list = screens.lists[listByItem[item]];
    if (!list) return heard('There is no such list', false);
    var id = (player.state.entry || catalogue.titles[0]).id;
    var at = list.indexOf(id);
    if (add && at < 0) list.push(id);
    if (!add && at >= 0) list.splice(at, 1);
    screens.renderLists();
    return heard(catalogue.byId(id).title + (add ? ' added' : ' removed'));
  }

  function changeScreen(state) {
    if (['Home', 'Player', 'List', 'Setting', 'Search'].indexOf(state) < 0)
      return heard('No screen ' + state, false);
    screens.show(state);
    return heard('Showing ' + state);
  }

  function isOn(mode) {
    return mode === 'MEDIA_FUNCTION_ON';
  }

  function modeCommand(name, label) {
    return playerCommand(
      function (mode) {
        return label + (isOn(mode) ? ' on' : ' off');
      },
      function (mode) {
        player.set(name, isOn(mode));
      }
    );
  }

  var callbacks = {
    onupdatestate: function () {
      return screens.current();
    },
    onnavigation: navigate,
    onsearch: search,
    onplay: playerCommand(text('Playing'), player.play),
    onstop: playerCommand(text('Stopped'), player.stop),
    onpause: playerCommand(text('Paused'), player.pause),
    onexit: function () {
      screens.show('Home');
      return heard('Back home');
    },
    onselection: select,
    ontitleselection: openTitle,
    oncustom: function (json) {
      return heard('Custom: ' + json);
    },
    onfastforward: playerCommand(text('Fast forward'), player.wind.bind(null, 8)),
    onrewind: playerCommand(text('Rewinding'), player.wind.bind(null, -8)),
    ondefaultsearch: function (json) {
      return search(JSON.parse(json).title ? { title: JSON.parse(json).title } : {});
    },
    onsearchcollection: collectionAnswer,
    onchangeappstate: changeScreen,
    onchangeprevioustrack: playerCommand(text('Previous title'), player.previous),
    onchangenexttrack: playerCommand(text('Next title'), player.next),
    onrestart: playerCommand(text('From the beginning'), player.seek.bind(null, 0)),
    onskipbackward: playerCommand(
      function (seconds) {
        return 'Back ' + seconds + ' s';
      },
      function (seconds) {
        player.skip(-seconds);
      }
    ),
    onskipforward: playerCommand(function (seconds) {
      return 'Forward ' + seconds + ' s';
    }, player.skip),
    onsetplayposition: playerCommand(function (seconds) {
      return 'At ' + seconds + ' s';
    }, player.seek),
    onchangesubtitlemode: modeCommand('subtitles', 'Subtitles'),
    onchangeshufflemode: modeCommand('shuffle', 'Shuffle'),
    onchangescreenfitmode: modeCommand('screenFit', 'Screen fit'),
    onchange360mode: modeCommand('panorama', '360°'),
    onzoom: playerCommand(
      function (mode) {
        return mode === 'MEDIA_ZOOM_IN' ? 'Closer' : 'Farther';
      },
      function (mode) {
        player.set('zoom', player.state.zoom + (mode === 'MEDIA_ZOOM_IN' ? 10 : -10));
      }
    ),
    onchangerepeatmode: playerCommand(
      function (mode) {
        return 'Repeat ' + mode.slice('MEDIA_REPEAT_'.length).toLowerCase();
      },
      function (mode) {
        player.set('repeat', mode.slice('MEDIA_REPEAT_'.length).toLowerCase());
      }
    ),
    onadditiontolist: function (item) {
      return changeList(item, true);
    },
    onremovalfromlist: function (item) {
      return changeList(item, false);
    },
    // Two actions are missing on purpose: a film can't be rotated, and after a start there is nothing to continue.
  };

  // The lists describe their own items, with shorter names as aliases. Every other screen uses the script's element
  // map.
  function describeLists() {
    var items = screens.focusables().map(function (node) {
      var box = node.getBoundingClientRect();
      var title = node.textContent.trim();
      var alias = [title.split(' ').pop()];
      var isFocused = node === document.activeElement;
      return voice.buildVoiceInteractionContentContextItem(box.left, box.top, title, alias, isFocused);
    });
    return voice.buildVoiceInteractionContentContextResponse(items);
  }

  function register(screen) {
    if (screen === 'List') {
      callbacks.onrequestcontentcontext = describeLists;
    } else {
      delete callbacks.onrequestcontentcontext;
    }
    voice.setCallback(callbacks);
  }

  function start() {
    register(screens.current());
    voice.listen();
    screens.onShow(register);
    badge.textContent = 'Listening';
  }

  function showOff(reason) {
    badge.textContent = reason;
    badge.className = 'badge off';
  }

  if (!voice) {
    showOff('No voice control here');
    return;
  }
  try {
    start();
  } catch (error) {
    showOff('No voice control: ' + error.message);
  }
})();
