// From places in scripts as they run to places in the files that were written, by source maps.
//
// Evaluates to a function that is called once for each page, in a world of its own, where neither the page's scripts nor
// its content-security policy reach. `sourceMap` is the library of that name.
(function (sourceMap) {
  'use strict';

  // By the scripts' URLs; null for a script without a map.
  var consumers = new Map();

  function request(url) {
    var reading = new XMLHttpRequest();
    reading.open('GET', url, false);
    reading.send();
    return reading.status === 200 || reading.status === 0 ? reading : null;
  }

  function mapUrlOf(script) {
    var header = script.getResponseHeader('SourceMap') || script.getResponseHeader('X-SourceMap');
    // The last comment counts.
    var comments = script.responseText.match(/\/[/*][#@]\s*sourceMappingURL=[^\s'"*]+/g);
    return header || (comments && comments[comments.length - 1].replace(/^.*?=/, ''));
  }

  function readConsumer(url) {
    var script = request(url);
    var mapUrl = script && mapUrlOf(script);
    if (!mapUrl) return null;
    var address = new URL(mapUrl, url).href;
    var map = request(address);
    // What an inline map's files are named by is the script's place.
    return (
      map &&
      new sourceMap.SourceMapConsumer(
        map.responseText.replace(/^\)]}'.*/, ''),
        address.startsWith('data:') ? url : address
      )
    );
  }

  function consumerOf(url) {
    if (!consumers.has(url)) {
      consumers.set(url, null);
      consumers.set(url, readConsumer(url));
    }
    return consumers.get(url);
  }

  // The place in the written file; the same place where no map knows it.
  return function (place) {
    try {
      var parts = /^(.*):(\d+):(\d+)$/.exec(place);
      var consumer = consumerOf(parts[1]);
      var column = Math.max(0, Number(parts[3]) - 1);
      var found = consumer && consumer.originalPositionFor({ line: Number(parts[2]), column: column });
      return found && found.source ? found.source + ':' + found.line + ':' + (found.column + 1) : place;
    } catch (error) {
      return place;
    }
  };
});
