// Reads the values of `show` and `value` in a page and returns {value: …} or {error: message}. Catching exceptions here
// keeps them from appearing as uncaught errors of the page on every poll.

// The value of an expression that is wrapped in a function.
function valueOf(expression) {
  try {
    return { value: expression() };
  } catch (error) {
    return { error: 'The expression threw ' + error + '.' };
  }
}

// The text of the first element that the selector matches.
function shownText(selector) {
  var element;
  try {
    element = document.querySelector(selector);
  } catch (error) {
    return { error: 'The selector ' + selector + ' is invalid: ' + error.message };
  }
  if (element === null) return { error: 'The page has no element ' + selector + '.' };
  var hasValue = /^(input|select|textarea)$/.test(element.localName);
  return { value: String(hasValue ? element.value : element.textContent).trim() };
}
