// Finds out whether the page is at rest.

// A text that changes whenever the page has loaded or changed something since the first call.
function activity() {
  var key = Symbol.for('corvis.activity');
  if (!window[key]) {
    var counter = { changes: 0 };
    Object.defineProperty(window, key, { value: counter });
    new MutationObserver(function (changes) {
      counter.changes += changes.length;
    }).observe(document, { subtree: true, childList: true, attributes: true, characterData: true });
  }
  return [document.readyState, window[key].changes, performance.getEntriesByType('resource').length].join(
    ' '
  );
}
