// Lists what a page has requested.

// The requests after the first `known.count` of the page that loaded at `known.origin`.
function pageRequests(known) {
  var entries = performance.getEntriesByType('resource');
  var origin = performance.timeOrigin;
  var begin = known.origin === origin && known.count <= entries.length ? known.count : 0;
  var requests = entries.slice(begin, begin + 200).map(function (entry) {
    return {
      url: String(entry.name).slice(0, 500),
      kind: String(entry.initiatorType),
      status: entry.responseStatus || 0,
      ms: entry.duration,
    };
  });
  return { origin: origin, count: entries.length, requests: requests };
}
