// Maps positions in running scripts to positions in the source files, with source maps.
//
// Evaluates to a function that is called once for each page, in an isolated world, to which neither the page's scripts
// nor its content security policy apply. `sourceMap` is the library of that name.
(function (sourceMap) {
  'use strict';

  // The consumers by script URL; null for a script without a map.
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
    // The file names in an inline map are relative to the script.
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

  // Returns the position in the source file, or the same position if no map contains it.
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
