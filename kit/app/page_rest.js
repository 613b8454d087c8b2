// Finds out whether the page is at rest.

function isWaiting() {
  var isLoading = Array.prototype.some.call(document.images, function (image) {
    return !image.complete && image.loading !== 'lazy';
  });
  return isLoading || window[Symbol.for('corvis.pendingRequests')] > 0;
}

// A text that changes whenever the page has loaded or changed something since the first call, and while it waits for a
// request of a script or an image.
function activity() {
  var key = Symbol.for('corvis.activity');
  if (!window[key]) {
    var counter = { changes: 0, waits: 0 };
    Object.defineProperty(window, key, { value: counter });
    new MutationObserver(function (changes) {
      counter.changes += changes.length;
    }).observe(document, { subtree: true, childList: true, attributes: true, characterData: true });
  }
  if (isWaiting()) window[key].waits += 1;
  return [
    document.readyState,
    window[key].changes,
    window[key].waits,
    performance.getEntriesByType('resource').length,
  ].join(' ');
}
